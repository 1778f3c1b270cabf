// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "ports/accelerator_registry.h"

namespace pallimo::app {

/// A registry that gives up. Whoever reads an entry's properties reads again until it succeeds; a
/// report that is asked for because something does not answer has to come to an end, so that here
/// an entry that failed often enough is an empty one. One thread at a time.
class ImpatientAcceleratorRegistry final : public ports::AcceleratorRegistry {
 public:
  static constexpr int kAttempts = 1000;

  /// `registry` outlives the object.
  explicit ImpatientAcceleratorRegistry(ports::AcceleratorRegistry& registry)
      : registry_(registry) {}

  /// Whether an entry was given up.
  bool hasGivenUp() const { return hasGivenUp_; }

  std::optional<std::uint32_t> matchingServices(std::string_view className) override {
    return registry_.matchingServices(className);
  }
  std::uint32_t next(std::uint32_t iterator) override { return registry_.next(iterator); }
  std::optional<base::PropertyList> properties(std::uint32_t entry) override {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      if (auto properties = registry_.properties(entry)) return properties;
    }
    hasGivenUp_ = true;
    return base::PropertyList();
  }
  void release(std::uint32_t object) override { registry_.release(object); }

 private:
  ports::AcceleratorRegistry& registry_;
  bool hasGivenUp_ = false;
};

}  // namespace pallimo::app
