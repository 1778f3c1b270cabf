// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recording.h"

#include <algorithm>
#include <utility>

#include "adapters/simulated/file_bytes.h"

namespace pallimo::adapters::simulated {

namespace {

// More than any document that a helper passes on.
constexpr std::size_t kLargestDocument = std::size_t{64} * 1024 * 1024;

SmcBytes countBytes(const std::optional<std::uint32_t>& count) {
  if (!count) return std::nullopt;
  std::array<std::uint8_t, 32> bytes{};
  for (std::size_t i = 0; i < 4; ++i) {
    bytes[i] = static_cast<std::uint8_t>(*count >> (8 * (3 - i)));
  }
  return bytes;
}

}  // namespace

std::size_t Recording::stepForRequest(std::uint64_t request) const {
  if (request == 0 || steps.empty()) return 0;
  return static_cast<std::size_t>((request - 1) % steps.size());
}

std::optional<base::Bytes> Recording::documentBytes(std::size_t step) const {
  const auto& file = steps.at(step).powermetrics;
  if (!file) return std::nullopt;
  auto read = readFileBytes(pathOf(*file), kLargestDocument);
  auto* bytes = std::get_if<base::Bytes>(&read);
  if (bytes == nullptr || bytes->empty()) return std::nullopt;
  return std::move(*bytes);
}

SmcBytes Recording::smcBytes(std::size_t step, const std::string& key) const {
  if (key == "#KEY") return countBytes(smc.keyCount);
  const auto& changed = steps.at(step).smc;
  if (const auto found = changed.find(key); found != changed.end()) return found->second;
  const auto found = std::find_if(smc.keys.begin(), smc.keys.end(),
                                  [&key](const SmcKey& listed) { return listed.key == key; });
  return found == smc.keys.end() ? std::nullopt : found->bytes;
}

}  // namespace pallimo::adapters::simulated
