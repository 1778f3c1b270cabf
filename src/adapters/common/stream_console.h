// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/console.h"

namespace pallimo::adapters::common {

/// The system's own lines on standard output or standard error, or any other open descriptor,
/// which is not closed. A line is one write, so that lines of two threads never mix. A line that
/// can't be written is lost in silence.
class StreamConsole final : public ports::Console {
 public:
  explicit StreamConsole(int descriptor) : descriptor_(descriptor) {}

  void writeLine(std::string_view line) override;

 private:
  const int descriptor_;
};

}  // namespace pallimo::adapters::common
