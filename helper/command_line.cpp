// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/command_line.h"

namespace pallimo::helper {

const std::string_view kHelpText = R"(Usage: com.ostrovane.powermetrics

Takes samples with powermetrics for Pallimo, which installs this program and has
it started. There is nothing to start by hand.

  --version              print the version
  --help                 print this help
)";

std::optional<Answer> answerTo(const std::vector<std::string_view>& arguments,
                               std::string_view version) {
  if (arguments.empty()) return std::nullopt;
  if (arguments.size() == 1 && arguments[0] == "--help") {
    return Answer{std::string(kHelpText), exit_status::kServed};
  }
  if (arguments.size() == 1 && arguments[0] == "--version") {
    return Answer{"com.ostrovane.powermetrics " + std::string(version) + "\n",
                  exit_status::kServed};
  }
  return Answer{"com.ostrovane.powermetrics: takes no such argument; see --help\n",
                exit_status::kWrongUse};
}

}  // namespace pallimo::helper
