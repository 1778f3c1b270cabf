// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recording.h"

#include <utility>
#include <variant>

#include "adapters/simulated/file_bytes.h"

namespace pallimo::adapters::simulated {

namespace {

// More than any document that a helper passes on, and than any report.
constexpr std::size_t kLargestFile = std::size_t{64} * 1024 * 1024;

std::optional<base::Bytes> bytesOf(const std::string& path) {
  auto read = readFileBytes(path, kLargestFile);
  auto* bytes = std::get_if<base::Bytes>(&read);
  if (bytes == nullptr) return std::nullopt;
  return std::move(*bytes);
}

}  // namespace

std::size_t Recording::stepForRequest(std::uint64_t request) const {
  if (request == 0 || steps.empty()) return 0;
  return static_cast<std::size_t>((request - 1) % steps.size());
}

std::optional<base::Bytes> Recording::documentBytes(std::size_t step) const {
  const auto& file = steps.at(step).powermetrics;
  if (!file) return std::nullopt;
  auto bytes = bytesOf(pathOf(*file));
  return bytes && bytes->empty() ? std::nullopt : bytes;
}

std::optional<base::Bytes> Recording::reportBytes(const std::string& dataType) const {
  const auto file = systemProfiler.find(dataType);
  return file == systemProfiler.end() ? std::nullopt : bytesOf(pathOf(file->second));
}

}  // namespace pallimo::adapters::simulated
