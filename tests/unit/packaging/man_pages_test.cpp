// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/start/command_line.h"
#include "app/start/run_end.h"
#include "helper/command_line.h"
#include "tools/powermetrics/powermetrics_arguments.h"
#include "tools/powermetrics/powermetrics_tool.h"

// A manual page says what its program's --help says, in more words, and no program ends with a
// status that its page does not name.

namespace pallimo {
namespace {

using Texts = std::set<std::string>;

constexpr const char* kApp = "pallimo.1";
constexpr const char* kHelper = "com.ostrovane.powermetrics.8";
constexpr const char* kStandIn = "pallimo-powermetrics.1";

std::vector<std::string> linesOf(std::istream&& text) {
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> page(const std::string& name) {
  auto lines = linesOf(std::ifstream(PALLIMO_SOURCE_DIR "/packaging/man/" + name));
  EXPECT_FALSE(lines.empty()) << name;
  return lines;
}

/// The titles of the page's sections.
std::vector<std::string> sections(const std::string& name) {
  std::vector<std::string> titles;
  for (const std::string& line : page(name)) {
    if (line.starts_with(".Sh ")) titles.push_back(line.substr(4));
  }
  return titles;
}

/// What the section's entries stand under: ".It Fl -help" gives "Fl -help".
std::vector<std::string> entries(const std::string& name, const std::string& section) {
  std::vector<std::string> found;
  bool isInside = false;
  for (const std::string& line : page(name)) {
    if (line.starts_with(".Sh ")) isInside = line == ".Sh " + section;
    if (isInside && line.starts_with(".It ")) found.push_back(line.substr(4));
  }
  return found;
}

std::string inCapitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
  return text;
}

/// An entry as a help text writes it: "Fl -serve Ar address : Ns Ar port" is
/// "--serve ADDRESS:PORT", "Fl n , Fl -samples Ar n" is "-n, --samples N".
std::string plain(const std::string& entry) {
  std::istringstream words(entry);
  std::string text;
  bool isOption = false;
  bool isGlued = true;
  for (std::string word; words >> word;) {
    if (word == "Fl" || word == "Ar") {
      isOption = word == "Fl";
    } else if (word == "Ns") {
      isGlued = true;
    } else if (word == "," || word == ":") {
      text += word;
      isGlued = false;
    } else {
      if (!isGlued) text += ' ';
      text += isOption ? "-" + word : inCapitals(word);
      isGlued = false;
    }
  }
  return text;
}

Texts optionsOfPage(const std::string& name) {
  Texts options;
  for (const std::string& entry : entries(name, "OPTIONS")) options.insert(plain(entry));
  return options;
}

/// The first column of the help's lines about options.
Texts optionsOfHelp(std::string_view help) {
  Texts options;
  for (const std::string& line : linesOf(std::istringstream(std::string(help)))) {
    if (!line.starts_with("  -")) continue;
    options.insert(line.substr(2, line.find("  ", 2) - 2));
  }
  EXPECT_FALSE(options.empty());
  return options;
}

std::set<int> statusesOfPage(const std::string& name) {
  std::set<int> statuses;
  for (const std::string& entry : entries(name, "EXIT STATUS")) statuses.insert(std::stoi(entry));
  return statuses;
}

TEST(ManPages, HaveTheSectionsThatAReaderLooksFor) {
  for (const char* name : {kApp, kHelper, kStandIn}) {
    EXPECT_EQ(sections(name),
              (std::vector<std::string>{"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "ENVIRONMENT",
                                        "FILES", "EXIT STATUS", "EXAMPLES", "SEE ALSO"}))
        << name;
  }
}

TEST(ManPages, HaveEveryOptionOfTheHelpAndNoOther) {
  EXPECT_EQ(optionsOfPage(kApp), optionsOfHelp(app::kHelpText));
  EXPECT_EQ(optionsOfPage(kHelper), optionsOfHelp(helper::kHelpText));
  EXPECT_EQ(optionsOfPage(kStandIn), optionsOfHelp(tools::powermetrics::kHelpText));
}

TEST(ManPages, NameNoOptionThatTheAppDoesNotKnow) {
  for (const std::string& option : optionsOfPage(kApp)) {
    const auto parsed = app::parseCommandLine({option.substr(0, option.find(' '))});
    const auto* error = std::get_if<app::UsageError>(&parsed);
    const std::string complaint = error == nullptr ? "" : error->message;
    EXPECT_FALSE(complaint.starts_with("unknown")) << complaint;
  }
}

TEST(ManPages, NameEveryExitStatusAndNoOther) {
  EXPECT_EQ(statusesOfPage(kApp),
            std::set<int>(app::run_status::kAll.begin(), app::run_status::kAll.end()));
  using namespace helper::exit_status;
  EXPECT_EQ(statusesOfPage(kHelper), (std::set<int>{kServed, kNotPrepared, kWrongUse}));
  using namespace tools::powermetrics;
  EXPECT_EQ(statusesOfPage(kStandIn), (std::set<int>{kSuccess, kFailure, kUsageFailure}));
}

TEST(ManPages, TheHelpOfTheAppNamesEveryExitStatus) {
  std::set<int> statuses;
  for (const std::string& line : linesOf(std::istringstream(std::string(app::kHelpText)))) {
    const bool isStatus = line.size() > 4 && line.starts_with("  ") &&
                          std::isdigit(static_cast<unsigned char>(line[2])) != 0;
    if (isStatus) statuses.insert(std::stoi(line.substr(2)));
  }
  EXPECT_EQ(statuses, std::set<int>(app::run_status::kAll.begin(), app::run_status::kAll.end()));
}

TEST(ManPages, TheStandInsCannotBeTakenForTheSystemsOwn) {
  std::string text;
  for (const std::string& line : page(kStandIn)) text += line + "\n";
  EXPECT_NE(text.find(".Dt PALLIMO-POWERMETRICS 1\n"), std::string::npos);
  EXPECT_NE(text.find(".Nd stand-in for powermetrics on Pallimo's simulated Mac\n"),
            std::string::npos);
  EXPECT_NE(text.find("It measures nothing.\n"), std::string::npos);
}

}  // namespace
}  // namespace pallimo
