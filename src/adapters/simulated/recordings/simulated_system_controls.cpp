// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recordings/simulated_system_controls.h"

#include <cstring>
#include <limits>
#include <utility>

namespace pallimo::adapters::simulated {

namespace {

template <typename Number>
base::Bytes memoryOf(Number number) {
  base::Bytes bytes(sizeof number);
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}

base::Bytes bytesOf(std::int64_t integer) {
  const bool has32Bits = integer >= std::numeric_limits<std::int32_t>::min() &&
                         integer <= std::numeric_limits<std::uint32_t>::max();
  return has32Bits ? memoryOf(static_cast<std::uint32_t>(integer)) : memoryOf(integer);
}

base::Bytes bytesOf(const std::string& text) {
  base::Bytes bytes(text.begin(), text.end());
  bytes.push_back(0);  // the kernel counts the final NUL
  return bytes;
}

}  // namespace

SimulatedSystemControls::SimulatedSystemControls(SystemControlValues values)
    : values_(std::move(values)) {}

std::optional<base::Bytes> SimulatedSystemControls::bytes(std::string_view name) const {
  const auto found = values_.find(name);
  if (found == values_.end()) return std::nullopt;
  return std::visit([](const auto& value) { return bytesOf(value); }, found->second);
}

}  // namespace pallimo::adapters::simulated
