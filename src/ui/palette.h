// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

#include "ui/graph_data.h"

namespace pallimo::ui {

enum class ColorScheme { light, dark };

/// sRGB with opacity, 0 to 255 each.
struct Rgba {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t alpha = 255;
  bool operator==(const Rgba&) const = default;
};

/// Every colour of the windows in one scheme.
struct Palette {
  Rgba window;  ///< behind everything
  Rgba panel;   ///< a panel's frame, filled
  Rgba panelBorder;
  Rgba text;           ///< titles
  Rgba secondaryText;  ///< units, labels, core counts
  Rgba grid;           ///< outline and grid of a graph at full strength; shown at opacity 0.1
  Rgba control;        ///< the more button and plain buttons
  Rgba controlHover;
  Rgba accent;  ///< the button that mends, a switch that is on
  Rgba accentText;
  Rgba divider;

  Rgba series(SeriesColor color) const;

  Rgba blue, cyan, orange, pink, purple;
};

const Palette& palette(ColorScheme scheme);

}  // namespace pallimo::ui
