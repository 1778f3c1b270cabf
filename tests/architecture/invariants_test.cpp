// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "architecture/layers.h"
#include "architecture/source_tree.h"

namespace pallimo::architecture {
namespace {

bool isAdapter(const SourceFile& file) { return startsWith(file.path, "src/adapters/"); }

/// Files that may name Qt: adapters, painted widgets, the app's window, a Mac's part of it, and the
/// app's main.
bool mayUseQt(const SourceFile& file) {
  return startsWith(file.path, "src/adapters/qt/") || startsWith(file.path, "src/ui/widgets/") ||
         startsWith(file.path, "src/app/window/") || startsWith(file.path, "src/app/macos/") ||
         file.path == "src/app/main.cpp";
}

bool isConditional(const std::string& line) {
  const std::size_t at = line.find_first_not_of(" \t");
  if (at == std::string::npos || line[at] != '#') return false;
  const std::size_t word = line.find_first_not_of(" \t", at + 1);
  return word != std::string::npos &&
         (line.compare(word, 2, "if") == 0 || line.compare(word, 4, "elif") == 0);
}

void expectNowhere(const std::vector<SourceFile>& files, const std::vector<std::string>& words) {
  for (const SourceFile& file : files) {
    for (const std::string& line : file.lines) {
      for (const std::string& word : words) {
        EXPECT_EQ(line.find(word), std::string::npos) << file.path << ": " << line;
      }
    }
  }
}

template <typename Predicate>
std::vector<SourceFile> productSourcesIf(Predicate predicate) {
  std::vector<SourceFile> files;
  for (SourceFile& file : productSources()) {
    if (predicate(file)) files.push_back(std::move(file));
  }
  return files;
}

TEST(Invariants, QtStaysInItsAdaptersTheWidgetsAndTheWindow) {
  for (const SourceFile& file : productSourcesIf([](const auto& f) { return !mayUseQt(f); })) {
    for (const std::string& line : file.lines) {
      const std::string header = includedHeader(line);
      const bool isQt = header.size() > 1 && header[0] == 'Q' && std::isupper(header[1]) != 0;
      EXPECT_FALSE(isQt || startsWith(header, "Qt")) << file.path << ": " << line;
    }
  }
}

TEST(Invariants, NoOperatingSystemConditionInSrc) {
  for (const SourceFile& file : sourcesBelow("src")) {
    for (const std::string& line : file.lines) {
      if (!isConditional(line)) continue;
      for (const char* system : {"__APPLE__", "__MACH__", "__linux__", "__unix__", "_WIN32",
                                 "TARGET_OS_", "Q_OS_", "__FreeBSD__"}) {
        EXPECT_EQ(line.find(system), std::string::npos) << file.path << ": " << line;
      }
    }
  }
}

TEST(Invariants, NoRealClockOutsideAdapters) {
  expectNowhere(productSourcesIf([](const auto& file) {
                  // The stand-in's main is the adapter of the tool: it hands its clock in.
                  return !isAdapter(file) && file.path != "tools/powermetrics/main.cpp";
                }),
                {"_clock::now(", "gettimeofday(", "clock_gettime(", "time(nullptr)", "time(NULL)",
                 "QDateTime::current", "QElapsedTimer", "sleep_for(", "sleep_until(", "usleep("});
}

TEST(Invariants, OnlyTheAppKnowsASharedInstance) {
  expectNowhere(productSourcesIf([](const auto& file) {
                  return !startsWith(file.path, "src/app/") &&
                         !startsWith(file.path, "src/adapters/qt/");
                }),
                {"instance()", "sharedInstance("});
}

TEST(Invariants, ThreadsAndTimersHaveAnOwner) {
  // Threads that can be held up by the system for as long as it likes are left behind at the end,
  // and end with the process: in connecting to a helper that was stopped, to a bus that hangs, and
  // in looking up a server's name.
  const std::set<std::string> leavesOneBehind = {
      "src/adapters/linux/link/dbus_helper_connection.cpp",
      "src/adapters/linux/notices/desktop_notifications.cpp", "src/adapters/qt/qt_http_client.cpp"};
  expectNowhere(
      productSourcesIf([&](const auto& file) { return leavesOneBehind.count(file.path) == 0; }),
      {".detach()", "std::async(", "std::jthread"});
}

TEST(Invariants, TheMacAdaptersStaySmall) {
  std::size_t total = 0;
  for (const SourceFile& file : sourcesBelow("src/adapters/macos")) {
    EXPECT_LE(file.lines.size(), 150u) << file.path;
    total += file.lines.size();
  }
  EXPECT_LE(total, 900u);
}

TEST(Invariants, ObjectiveCppStaysInTheMacAdaptersAndTheHelpersOwn) {
  for (const SourceFile& file : productSources()) {
    if (!file.path.ends_with(".mm")) continue;
    EXPECT_TRUE(startsWith(file.path, "src/adapters/macos/") ||
                startsWith(file.path, "helper/macos/"))
        << file.path;
  }
}

TEST(Invariants, NoFileIsLongerThan600Lines) {
  std::vector<SourceFile> files = productSources();
  for (const char* folder : {"tests", "benchmarks"}) {
    for (SourceFile& file : sourcesBelow(folder)) files.push_back(std::move(file));
  }
  for (const SourceFile& file : files) EXPECT_LE(file.lines.size(), 600u) << file.path;
}

TEST(Invariants, EveryFileNamesItsLicenceAndEveryHeaderIsGuarded) {
  std::vector<SourceFile> files = productSources();
  for (SourceFile& file : sourcesBelow("tests")) files.push_back(std::move(file));
  for (const SourceFile& file : files) {
    ASSERT_GE(file.lines.size(), 2u) << file.path;
    EXPECT_EQ(file.lines[0], "// SPDX-License-Identifier: MIT") << file.path;
    EXPECT_EQ(file.lines[1], "// SPDX-FileCopyrightText: 2026 The Pallimo authors") << file.path;
    if (!file.path.ends_with(".h")) continue;
    const std::size_t guard = file.lines.size() > 3 && file.lines[3] == "#pragma once" ? 1 : 0;
    EXPECT_EQ(guard, 1u) << file.path << " wants #pragma once on line 4";
  }
}

TEST(Invariants, ABuildThatIsToldNoAddressesLeadsToNamesThatNoOneCanOwn) {
  int addresses = 0;
  for (const std::string& line : splitLines(readText(root() / "CMakeLists.txt"))) {
    if (!startsWith(line, "set(PALLIMO_") || line.find("_ADDRESS ") == std::string::npos) continue;
    EXPECT_NE(line.find("pallimo.invalid"), std::string::npos) << line;
    ++addresses;
  }
  EXPECT_EQ(addresses, 3);
}

TEST(Invariants, EveryFolderHasItsParagraphInTheArchitecture) {
  const std::string text = readText(root() / "ARCHITECTURE.md");
  for (const auto& [folder, floor] : readLayers().floors) {
    EXPECT_NE(text.find("- `" + folder + "/`: "), std::string::npos) << folder;
  }
  for (const char* parent : {"src", "src/adapters", "tests"}) {
    for (const auto& entry : std::filesystem::directory_iterator(root() / parent)) {
      if (!entry.is_directory() || entry.path().filename() == "adapters") continue;
      const std::string folder =
          std::filesystem::relative(entry.path(), root()).generic_string() + "/";
      EXPECT_NE(text.find("`" + folder + "`"), std::string::npos) << folder;
    }
  }
  for (const char* folder :
       {"helper/", "tools/powermetrics/", "benchmarks/", "docs/", "cmake/", "scripts/"}) {
    EXPECT_NE(text.find("`" + std::string(folder) + "`"), std::string::npos) << folder;
  }
}

}  // namespace
}  // namespace pallimo::architecture
