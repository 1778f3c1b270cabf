// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <vector>

#include "ports/standard_output.h"

namespace pallimo::fakes {

/// Keeps what is printed; its reader goes, or its disk fills up, when the test says so.
class RecordingOutput final : public ports::StandardOutput {
 public:
  State state = State::open;
  std::string text;

  State write(std::string_view written) override {
    if (state == State::open) text += written;
    return state;
  }
  std::string failure() const override { return "No space left on device"; }

  /// What was printed since the last call, line by line.
  std::vector<std::string> takeLines() {
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text.find('\n', begin)) != std::string::npos;
         begin = end + 1) {
      lines.push_back(text.substr(begin, end - begin));
    }
    if (begin != text.size()) lines.push_back(text.substr(begin) + " (no line end)");
    text.clear();
    return lines;
  }
};

}  // namespace pallimo::fakes
