// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recordings/recording.h"

#include <utility>

namespace pallimo::adapters::simulated {

std::size_t Recording::stepForRequest(std::uint64_t request) const {
  if (request == 0 || steps.empty()) return 0;
  return static_cast<std::size_t>((request - 1) % steps.size());
}

std::variant<base::Bytes, FileError> Recording::documentBytes(std::size_t step) const {
  return readFileBytes(pathOf(steps.at(step).powermetrics.value()), kLargestRecordedFile);
}

std::optional<base::Bytes> Recording::reportBytes(const std::string& dataType) const {
  const auto file = systemProfiler.find(dataType);
  if (file == systemProfiler.end()) return std::nullopt;
  auto read = readFileBytes(pathOf(file->second), kLargestRecordedFile);
  auto* bytes = std::get_if<base::Bytes>(&read);
  if (bytes == nullptr) return std::nullopt;
  return std::move(*bytes);
}

}  // namespace pallimo::adapters::simulated
