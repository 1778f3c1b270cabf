// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string_view>

#include "base/bytes.h"

namespace pallimo::ports {

/// The kernel's variables by name ("hw.cputype"). Any thread.
class SystemControls {
 public:
  virtual ~SystemControls() = default;

  /// The variable's bytes, all of them; nothing when it can't be read. The kernel does not tell
  /// what they mean: a text ends with NUL, which counts, and a number has 4 or 8 bytes in the
  /// host's order.
  virtual std::optional<base::Bytes> bytes(std::string_view name) const = 0;
};

}  // namespace pallimo::ports
