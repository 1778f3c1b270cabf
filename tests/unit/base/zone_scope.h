// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <stdlib.h>
#include <time.h>

#include <optional>
#include <string>

namespace pallimo::tests {

/// Another time zone for the life of the object; afterwards the one that was there. The whole
/// process sees it.
class ZoneScope {
 public:
  explicit ZoneScope(const char* zone) {
    if (const char* previous = getenv("TZ")) previous_ = previous;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~ZoneScope() {
    if (previous_) {
      setenv("TZ", previous_->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  ZoneScope(const ZoneScope&) = delete;
  ZoneScope& operator=(const ZoneScope&) = delete;

 private:
  std::optional<std::string> previous_;
};

}  // namespace pallimo::tests
