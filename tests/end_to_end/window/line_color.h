// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <cstdlib>

#include "ui/palette.h"

namespace pallimo::end_to_end {

/// As 0xRRGGBB.
inline std::uint32_t asPixel(const ui::Rgba& color) {
  return static_cast<std::uint32_t>(color.red << 16 | color.green << 8 | color.blue);
}

/// Whether the pixel is one of a line of that colour on that ground: a line that covers no pixel
/// wholly shows the ground through, but for the most part it is itself.
inline bool isOfLine(std::uint32_t pixel, const ui::Rgba& color, const ui::Rgba& ground) {
  constexpr int kLeast = 60;  // per cent
  constexpr int kRounding = 3;
  const auto isMixed = [&](int share) {
    const auto isNear = [share](int found, int line, int below) {
      return std::abs(found - (below + (line - below) * share / 100)) <= kRounding;
    };
    return isNear(static_cast<int>(pixel >> 16 & 0xff), color.red, ground.red) &&
           isNear(static_cast<int>(pixel >> 8 & 0xff), color.green, ground.green) &&
           isNear(static_cast<int>(pixel & 0xff), color.blue, ground.blue);
  };
  for (int share = kLeast; share <= 100; ++share) {
    if (isMixed(share)) return true;
  }
  return false;
}

}  // namespace pallimo::end_to_end
