// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "tools/powermetrics/powermetrics_arguments.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

namespace pallimo::tools::powermetrics {

const std::string_view kHelpText =
    R"(Usage: powermetrics -n 1 [-i MILLISECONDS] -f plist -s NAME[,NAME...]

Stands where the system's powermetrics stands on a Mac, for Pallimo's helper:
prints one sample of a simulated machine. It measures nothing.

  -n, --sample-count N   how many samples: 1
  -i, --sample-rate MILLISECONDS
                         how long the sample takes: 1 to 86400000, else 5000
  -f, --format FORMAT    how it is printed: plist
  -s, --samplers NAMES   what is in it, with commas between
  --help                 print this help, alone
)";

namespace {

constexpr std::int64_t kLongestPeriod = 86'400'000;  // a day

struct Option {
  std::string_view shortName;
  std::string_view longName;
};
constexpr Option kCount{"-n", "--sample-count"};
constexpr Option kPeriod{"-i", "--sample-rate"};
constexpr Option kFormat{"-f", "--format"};
constexpr Option kSamplers{"-s", "--samplers"};

/// The option's long name and, when it stands after "=", its value.
struct Written {
  std::string_view name;
  std::optional<std::string_view> value;
};

std::optional<Written> readOption(std::string_view argument) {
  for (const Option& option : {kCount, kPeriod, kFormat, kSamplers}) {
    if (argument == option.shortName || argument == option.longName) {
      return Written{option.longName, std::nullopt};
    }
    const std::size_t length = option.longName.size();
    if (argument.substr(0, length) == option.longName && argument.substr(length, 1) == "=") {
      return Written{option.longName, argument.substr(length + 1)};
    }
  }
  return std::nullopt;
}

using Values = std::map<std::string_view, std::string_view>;

std::optional<Values> collect(const std::vector<std::string>& arguments) {
  Values values;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    auto option = readOption(arguments[i]);
    if (!option) return std::nullopt;
    if (!option->value) {
      if (++i == arguments.size()) return std::nullopt;
      option->value = arguments[i];
    }
    if (!values.emplace(option->name, *option->value).second) return std::nullopt;
  }
  return values;
}

std::optional<std::chrono::milliseconds> readPeriod(std::string_view text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || number < 1 || number > kLongestPeriod) {
    return std::nullopt;
  }
  return std::chrono::milliseconds(number);
}

/// The names between commas; nothing when one of them is empty.
std::optional<std::vector<std::string>> readSamplers(std::string_view text) {
  std::vector<std::string> names;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t comma = std::min(text.find(',', start), text.size());
    if (comma == start) return std::nullopt;
    names.emplace_back(text.substr(start, comma - start));
    start = comma + 1;
  }
  return names;
}

}  // namespace

std::variant<Arguments, UsageError> parseArguments(const std::vector<std::string>& arguments) {
  const auto values = collect(arguments);
  if (!values) return UsageError{};
  const auto valueOf = [&values](const Option& option) {
    const auto found = values->find(option.longName);
    return found == values->end() ? std::string_view() : found->second;
  };
  if (valueOf(kCount) != "1" || valueOf(kFormat) != "plist") return UsageError{};
  Arguments read;
  if (values->count(kPeriod.longName) != 0) {
    const auto period = readPeriod(valueOf(kPeriod));
    if (!period) return UsageError{};
    read.period = *period;
  }
  auto samplers = readSamplers(valueOf(kSamplers));
  if (!samplers) return UsageError{};
  read.samplers = std::move(*samplers);
  return read;
}

}  // namespace pallimo::tools::powermetrics
