// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace pallimo::tools::powermetrics {

/// What the command line asks for. The stand-in knows the helper's way of calling the system's
/// tool and no other: one sample as a property list.
struct Arguments {
  std::chrono::milliseconds period{5000};  ///< the tool's own default
  std::vector<std::string> samplers;       ///< as written, in their order
};

/// The command line is not one of these. The one line to print says how it is used.
struct UsageError {};

inline constexpr const char* kUsage =
    "usage: powermetrics -n 1 [-i milliseconds] -f plist --samplers name[,name...]";

/// What `--help`, which stands alone, prints with its last line end.
extern const std::string_view kHelpText;

/// Reads the arguments, without the program's own name. Long names (--sample-count, --sample-rate,
/// --format, --samplers) and short ones (-n, -i, -f, -s); a long one also takes its value after
/// "=". Each at most once. The period is 1 to 86,400,000 ms. Sampler names are not checked here.
/// A pure function.
std::variant<Arguments, UsageError> parseArguments(const std::vector<std::string>& arguments);

}  // namespace pallimo::tools::powermetrics
