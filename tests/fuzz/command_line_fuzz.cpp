// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Any arguments, with a NUL between one and the next as the system hands them over. What is refused
// is refused in one line that is fit for a terminal; what is accepted is within the bounds that the
// program relies on, is written out and read again as the same, and is the same in another order.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/start/command_line.h"
#include "base/utf8.h"
#include "fuzz/require.h"
#include "serving/listen_address.h"

namespace {

using namespace pallimo::app;
using pallimo::fuzz::require;
using Arguments = std::vector<std::string>;
using Action = Options::Action;

Arguments argumentsIn(std::string_view bytes) {
  Arguments arguments;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\0'), bytes.size());
    arguments.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
  }
  return arguments;
}

std::string speedText(double speed) {
  char text[64];
  std::snprintf(text, sizeof text, "%.17g", speed);
  return text;
}

/// Each option in one argument, so that they may be put into any order.
Arguments writtenOut(const Options& options) {
  Arguments arguments;
  const auto add = [&](const char* name, const std::string& value) {
    arguments.push_back(std::string(name) + "=" + value);
  };
  if (options.action == Action::showHelp) arguments.emplace_back("--help");
  if (options.action == Action::showVersion) arguments.emplace_back("--version");
  if (options.action == Action::listMachines) arguments.emplace_back("--list-machines");
  if (options.action == Action::diagnose) arguments.emplace_back("--diagnose");
  if (options.headless) arguments.emplace_back("--headless");
  if (options.format == OutputFormat::csv) add("--format", "csv");
  if (options.format == OutputFormat::json) add("--format", "json");
  if (options.samples) add("--samples", std::to_string(*options.samples));
  if (options.installHelper) arguments.emplace_back("--install-helper");
  if (options.machine) add("--machine", *options.machine);
  if (options.speed != 1) add("--speed", speedText(options.speed));
  if (options.stateDir) add("--state-dir", *options.stateDir);
  if (options.serve) add("--serve", pallimo::serving::textOf(*options.serve));
  return arguments;
}

void checkError(const UsageError& error) {
  require(!error.message.empty());
  require(!pallimo::fuzz::hasControlCharacters(error.message));
  require(pallimo::base::repairedUtf8(error.message) == error.message);
}

void checkBounds(const Options& options) {
  require(!options.samples || *options.samples >= 1);
  require(options.speed >= 1 && options.speed <= 100);
  require(!options.machine || !options.machine->empty());
  require(!options.stateDir || !options.stateDir->empty());
  require(!options.serve || (options.serve->port >= 1 && !options.serve->host.empty()));
  const bool printsSamples = options.headless || options.action != Action::run;
  require(printsSamples || (options.format == OutputFormat::table && !options.samples));
  if (options.action != Action::diagnose) return;
  require(!options.headless && !options.installHelper && !options.serve && !options.samples);
}

/// What has to be accepted.
Options parsed(const Arguments& arguments) {
  const auto result = parseCommandLine(arguments);
  require(std::holds_alternative<Options>(result));
  return std::get<Options>(result);
}

void checkOptions(const Arguments& arguments, const Options& options) {
  checkBounds(options);
  const Arguments written = writtenOut(options);
  require(parsed(written) == options);
  require(parsed(Arguments(written.rbegin(), written.rend())) == options);
  // No option may stand twice, so that nothing can be overruled by what is appended.
  Arguments twice = arguments;
  twice.insert(twice.end(), arguments.begin(), arguments.end());
  require(arguments.empty() || std::holds_alternative<UsageError>(parseCommandLine(twice)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Arguments arguments =
      argumentsIn(std::string_view(reinterpret_cast<const char*>(data), size));
  const auto result = parseCommandLine(arguments);
  if (const auto* error = std::get_if<UsageError>(&result)) {
    checkError(*error);
  } else {
    checkOptions(arguments, std::get<Options>(result));
  }
  return 0;
}
