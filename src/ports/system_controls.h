// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/bytes.h"

namespace pallimo::ports {

/// The kernel's variables by name ("hw.cputype"). Any thread.
class SystemControls {
 public:
  virtual ~SystemControls() = default;

  /// The variable as an integer, or nothing when it can't be read as one.
  virtual std::optional<std::int64_t> integer(std::string_view name) const = 0;
  /// The variable's bytes, which for a text end with NUL; nothing when it can't be read.
  virtual std::optional<base::Bytes> bytes(std::string_view name) const = 0;
};

}  // namespace pallimo::ports
