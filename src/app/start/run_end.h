// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <string>
#include <string_view>

namespace pallimo::app {

/// The program's exit statuses.
namespace run_status {
inline constexpr int kDone = 0;
inline constexpr int kOutputFailed = 1;
inline constexpr int kWrongUse = 2;  ///< what the command line asks for can't be done
inline constexpr int kNotUsable = 3;
inline constexpr int kOutOfDate = 4;
inline constexpr int kRefused = 5;
inline constexpr int kLost = 6;
inline constexpr int kNoSamples = 7;
inline constexpr std::array kAll = {kDone,      kOutputFailed, kWrongUse, kNotUsable,
                                    kOutOfDate, kRefused,      kLost,     kNoSamples};
}  // namespace run_status

/// How a run ended.
struct RunEnd {
  int status = run_status::kDone;
  std::string message;  ///< one line for standard error, without the program's name; empty for 0
  bool operator==(const RunEnd&) const = default;
};

/// The lines of a run that ended before its time, as `RunEnd::message` holds them.
namespace run_message {
inline constexpr std::string_view kOutputFailed = "can't write to standard output: ";
inline constexpr std::string_view kWrongProcessor =
    "this app is only for Apple silicon; it does not work on this processor";
inline constexpr std::string_view kNotUsable =
    "the helper is absent or does not answer; run with --install-helper to install it";
inline constexpr std::string_view kStillNotUsable =
    "the helper does not answer, 5 seconds after its installation; the system log may say why";
inline constexpr std::string_view kOutOfDate =
    "the helper is out of date; run with --install-helper to update it";
inline constexpr std::string_view kRefused =
    "the helper could not be installed, or its installation was refused; the system log may say "
    "why";
inline constexpr std::string_view kSilent =
    "the helper fell silent while sampling; start again with --install-helper to replace it";
inline constexpr std::string_view kNoSamples =
    "the helper answers, but its powermetrics gives no samples; the system log may say why, and "
    "the window's menu can uninstall the helper";
inline constexpr std::string_view kLost =
    "the helper was lost while sampling; start again, or run with --install-helper to go on";
}  // namespace run_message

}  // namespace pallimo::app
