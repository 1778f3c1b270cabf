// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::ports {

/// The operating system's log. Any thread.
class SystemLog {
 public:
  virtual ~SystemLog() = default;

  /// Writes one line; the line carries no line end.
  virtual void write(std::string_view line) = 0;
};

}  // namespace pallimo::ports
