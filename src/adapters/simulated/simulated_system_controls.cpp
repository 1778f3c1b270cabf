// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/simulated_system_controls.h"

#include <utility>

namespace pallimo::adapters::simulated {

namespace {

template <typename Kind>
std::optional<Kind> find(const SystemControlValues& values, std::string_view name) {
  const auto found = values.find(name);
  if (found == values.end()) return std::nullopt;
  const auto* value = std::get_if<Kind>(&found->second);
  return value == nullptr ? std::nullopt : std::optional<Kind>(*value);
}

}  // namespace

SimulatedSystemControls::SimulatedSystemControls(SystemControlValues values)
    : values_(std::move(values)) {}

std::optional<std::int64_t> SimulatedSystemControls::integer(std::string_view name) const {
  return find<std::int64_t>(values_, name);
}

std::optional<base::Bytes> SimulatedSystemControls::bytes(std::string_view name) const {
  const auto text = find<std::string>(values_, name);
  if (!text) return std::nullopt;
  base::Bytes bytes(text->begin(), text->end());
  bytes.push_back(0);  // the kernel counts the final NUL
  return bytes;
}

}  // namespace pallimo::adapters::simulated
