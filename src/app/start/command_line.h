// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ports/metrics_server.h"

namespace pallimo::app {

/// What `--headless` prints.
enum class OutputFormat {
  table,  ///< for people
  csv,    ///< the log file's header and lines
  json,   ///< one object a line
};

/// What the command line asks for, checked. Values only.
struct Options {
  /// What the program does; all but `run` print their answer and end.
  enum class Action { run, showHelp, showVersion, listMachines, diagnose };

  Action action = Action::run;
  bool headless = false;
  OutputFormat format = OutputFormat::table;
  std::optional<std::uint64_t> samples;  ///< at least 1; absent: no end
  bool installHelper = false;
  std::optional<std::string> machine;  ///< a built-in machine's name or a recording's folder
  double speed = 1;                    ///< 1 to 100
  std::optional<std::string> stateDir;
  std::optional<ports::ListenAddress> serve;  ///< where the figures are served; absent: nowhere

  bool operator==(const Options&) const = default;
};

/// Whether standard output carries nothing but samples, or the report. Pure.
inline bool outputIsForResults(const Options& options) {
  return options.headless || options.action == Options::Action::diagnose;
}

/// One line that says what is wrong with the command line, without the program's name.
struct UsageError {
  std::string message;
  bool operator==(const UsageError&) const = default;
};

/// Reads the arguments that follow the program's name. A value stands in the next argument or
/// behind an equals sign; no option may stand twice. When several actions are asked for, help goes
/// before version, version before the list and the list before a diagnosis. Pure.
std::variant<Options, UsageError> parseCommandLine(const std::vector<std::string>& arguments);

/// What `--help` prints, with its last line end.
extern const std::string_view kHelpText;

}  // namespace pallimo::app
