// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pallimo::helper {

/// How the helper ends.
namespace exit_status {
inline constexpr int kServed = 0;       ///< nobody needs it any more, or another one serves
inline constexpr int kNotPrepared = 1;  ///< it can't serve, or can't print
inline constexpr int kWrongUse = 2;     ///< it was given an argument that it does not know
}  // namespace exit_status

/// What the helper says instead of serving.
struct Answer {
  std::string
      text;  ///< with its last line end; for standard output, a complaint for standard error
  int status = exit_status::kServed;
  bool operator==(const Answer&) const = default;
};

/// Whoever starts a helper to be served gives it no argument: then nothing is answered. `--help`
/// and `--version`, alone, are for people who find the file; everything else is a complaint, which
/// does not repeat what it was given. `arguments` follow the program's name. Pure.
std::optional<Answer> answerTo(const std::vector<std::string_view>& arguments,
                               std::string_view version);

/// What `--help` prints, with its last line end.
extern const std::string_view kHelpText;

}  // namespace pallimo::helper
