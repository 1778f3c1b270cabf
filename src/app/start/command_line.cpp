// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/start/command_line.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <set>

#include "base/text_format.h"
#include "base/utf8.h"
#include "serving/listen_address.h"

namespace pallimo::app {

const std::string_view kHelpText = R"(Usage: pallimo [options]

Shows power, frequency, temperature and utilisation of a Mac with Apple silicon.

  --headless             no window: print every sample to standard output
  --format FORMAT        what --headless prints: table (default), csv or json
  --samples N            end after N samples
  --install-helper       press the install button whenever it would be shown,
                         at most once a second
  --machine NAME|DIR     off macOS: simulate a built-in machine or play the
                         recording in DIR
  --list-machines        off macOS: list the built-in machines and, with
                         --machine DIR, the recording
  --speed X              off macOS: let time run X times faster (1 to 100)
  --serve ADDRESS:PORT   the current figures for Prometheus at /metrics; without
                         the address (:9123) for this machine alone
  --state-dir DIR        off macOS: where settings, the installed helper and its
                         socket live
  --diagnose             print a report to put into a bug report: installs and
                         sets nothing, names neither user nor host nor folders
  --version              print the version
  --help                 print this help

A run with --headless ends with one of these statuses:
  0  the samples are printed, standard output was closed, or SIGINT or SIGTERM came
  1  standard output can't be written
  2  a wrong option, or a machine, state folder or --serve address that can't
     be used
  3  the helper is absent or does not answer
  4  the helper is out of date
  5  the helper's installation was refused
  6  the helper was lost while sampling
  7  the helper answers, but gives no samples
)";

namespace {

using Complaint = std::optional<std::string>;

/// Sets what the option says, or returns the complaint about its value.
using Setter = Complaint (*)(Options&, const std::string& value);

struct OptionRule {
  std::string_view name;
  std::string_view valueName;  ///< empty: the option takes no value
  Setter set;
};

/// One line fit for a terminal, whatever the argument holds: UTF-8 without control characters,
/// those of ISO 8859 (U+0080 to U+009F), which some terminals follow, included.
std::string quoted(std::string_view argument) {
  std::string text;
  for (const char letter : base::repairedUtf8(argument)) {
    const auto byte = static_cast<unsigned char>(letter);
    const bool endsOne = byte >= 0x80 && byte < 0xA0 && text.ends_with('\xC2');
    if (endsOne) text.pop_back();
    text += endsOne || byte < 0x20 || byte == 0x7F ? '?' : letter;
  }
  return "\"" + text + "\"";
}

Complaint setAction(Options& options, Options::Action action) {
  constexpr std::array kRank = {Options::Action::run, Options::Action::diagnose,
                                Options::Action::listMachines, Options::Action::showVersion,
                                Options::Action::showHelp};
  const auto rank = [&](Options::Action one) {
    return std::find(kRank.begin(), kRank.end(), one) - kRank.begin();
  };
  if (rank(action) > rank(options.action)) options.action = action;
  return std::nullopt;
}

Complaint setFormat(Options& options, const std::string& value) {
  if (value == "table") {
    options.format = OutputFormat::table;
  } else if (value == "csv") {
    options.format = OutputFormat::csv;
  } else if (value == "json") {
    options.format = OutputFormat::json;
  } else {
    return "--format takes table, csv or json, not " + quoted(value);
  }
  return std::nullopt;
}

Complaint setSamples(Options& options, const std::string& value) {
  std::uint64_t count = 0;
  bool isGood = !value.empty();
  for (const char letter : value) {
    const bool isDigit = letter >= '0' && letter <= '9';
    const std::uint64_t digit = isDigit ? static_cast<std::uint64_t>(letter - '0') : 0;
    if (!isDigit || count > (std::numeric_limits<std::uint64_t>::max() - digit) / 10) {
      isGood = false;
      break;
    }
    count = count * 10 + digit;
  }
  if (!isGood || count == 0) {
    return "--samples takes a whole number of at least 1, not " + quoted(value);
  }
  options.samples = count;
  return std::nullopt;
}

Complaint setSpeed(Options& options, const std::string& value) {
  // strtod alone would also take spaces, hexadecimal numbers, "inf" and "nan".
  const bool isPlain = value.find_first_not_of("0123456789.eE+-") == std::string::npos;
  const base::CLocaleScope cLocale;
  char* end = nullptr;
  const double speed = std::strtod(value.c_str(), &end);
  const bool isWhole = end == value.c_str() + value.size();
  if (!isPlain || !isWhole || !std::isfinite(speed) || speed < 1 || speed > 100) {
    return "--speed takes a number from 1 to 100, not " + quoted(value);
  }
  options.speed = speed;
  return std::nullopt;
}

Complaint setServe(Options& options, const std::string& value) {
  const auto address = serving::parseListenAddress(value);
  if (const auto* problem = std::get_if<serving::AddressProblem>(&address)) {
    switch (*problem) {
      case serving::AddressProblem::portOutOfRange:
        return "--serve takes a port from 1 to 65535, not " + quoted(value);
      case serving::AddressProblem::notNumeric:
        return "--serve takes a numeric address before the port, not " + quoted(value);
      case serving::AddressProblem::notAnAddressAndPort:
        return "--serve takes ADDRESS:PORT such as 127.0.0.1:9123, not " + quoted(value);
    }
  }
  options.serve = std::get<ports::ListenAddress>(address);
  return std::nullopt;
}

constexpr std::array<OptionRule, 12> kRules = {{
    {"--headless", "",
     [](Options& options, const std::string&) -> Complaint {
       options.headless = true;
       return std::nullopt;
     }},
    {"--format", "FORMAT", setFormat},
    {"--samples", "N", setSamples},
    {"--install-helper", "",
     [](Options& options, const std::string&) -> Complaint {
       options.installHelper = true;
       return std::nullopt;
     }},
    {"--machine", "NAME|DIR",
     [](Options& options, const std::string& value) -> Complaint {
       options.machine = value;
       return std::nullopt;
     }},
    {"--list-machines", "",
     [](Options& options, const std::string&) {
       return setAction(options, Options::Action::listMachines);
     }},
    {"--speed", "X", setSpeed},
    {"--serve", "ADDRESS:PORT", setServe},
    {"--state-dir", "DIR",
     [](Options& options, const std::string& value) -> Complaint {
       options.stateDir = value;
       return std::nullopt;
     }},
    {"--diagnose", "",
     [](Options& options, const std::string&) {
       return setAction(options, Options::Action::diagnose);
     }},
    {"--version", "",
     [](Options& options, const std::string&) {
       return setAction(options, Options::Action::showVersion);
     }},
    {"--help", "",
     [](Options& options, const std::string&) {
       return setAction(options, Options::Action::showHelp);
     }},
}};

const OptionRule* findRule(std::string_view name) {
  const auto rule = std::find_if(kRules.begin(), kRules.end(),
                                 [&](const OptionRule& one) { return one.name == name; });
  return rule == kRules.end() ? nullptr : &*rule;
}

/// Walks the arguments; keeps which options were seen.
class Parser {
 public:
  explicit Parser(const std::vector<std::string>& arguments) : arguments_(arguments) {}

  std::variant<Options, UsageError> parse() {
    while (next_ < arguments_.size()) {
      if (const Complaint complaint = parseNext()) return UsageError{*complaint};
    }
    if (const Complaint complaint = checkTogether()) return UsageError{*complaint};
    return options_;
  }

 private:
  Complaint parseNext() {
    const std::string& argument = arguments_[next_++];
    if (argument.rfind("--", 0) != 0) {
      return argument.rfind('-', 0) == 0 && argument.size() > 1
                 ? "unknown option " + quoted(argument)
                 : "unexpected argument " + quoted(argument);
    }
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const OptionRule* rule = findRule(name);
    if (rule == nullptr) return "unknown option " + quoted(name);
    if (!seen_.insert(rule->name).second) return "option " + name + " stands twice";

    std::string value;
    if (equals != std::string::npos) value = argument.substr(equals + 1);
    if (rule->valueName.empty()) {
      if (equals != std::string::npos) return "option " + name + " takes no value";
    } else {
      if (equals == std::string::npos && nextIsValue()) value = arguments_[next_++];
      if (value.empty())
        return "option " + name + " needs a value: " + std::string(rule->valueName);
    }
    return rule->set(options_, value);
  }

  /// A value that begins with two dashes can be given behind an equals sign.
  bool nextIsValue() const {
    return next_ < arguments_.size() && arguments_[next_].rfind("--", 0) != 0;
  }

  Complaint checkTogether() const {
    if (options_.action == Options::Action::diagnose) return checkDiagnosis();
    if (options_.headless || options_.action != Options::Action::run) return std::nullopt;
    for (const char* name : {"--format", "--samples"}) {
      if (seen_.count(name) != 0) return std::string(name) + " works only with --headless";
    }
    return std::nullopt;
  }

  /// A report is all that is printed, and nothing is installed for it.
  Complaint checkDiagnosis() const {
    for (const char* name :
         {"--headless", "--format", "--samples", "--install-helper", "--serve"}) {
      if (seen_.count(name) != 0) return std::string(name) + " does not work with --diagnose";
    }
    return std::nullopt;
  }

  const std::vector<std::string>& arguments_;
  std::size_t next_ = 0;
  std::set<std::string_view> seen_;
  Options options_;
};

}  // namespace

std::variant<Options, UsageError> parseCommandLine(const std::vector<std::string>& arguments) {
  return Parser(arguments).parse();
}

}  // namespace pallimo::app
