// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::ports {

/// Where the system's own diagnostic lines go: standard output, or standard error in a run whose
/// standard output carries samples. Any thread; lines of two threads never mix.
class Console {
 public:
  virtual ~Console() = default;

  /// Writes the line and a line end.
  virtual void writeLine(std::string_view line) = 0;
};

}  // namespace pallimo::ports
