// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

#include "ui/graph_data.h"

namespace pallimo::ui {

// The one table that turns names of colours into pixels. Constants, any thread.

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
  Rgba panel;   ///< a panel's frame, filled; a menu's background
  Rgba panelBorder;
  Rgba text;           ///< titles
  Rgba secondaryText;  ///< units, labels, core counts
  Rgba grid;           ///< outline and grid of a graph at full strength; shown at opacity 0.1
  Rgba control;        ///< the more button
  Rgba controlHover;
  Rgba controlSelected;  ///< the chosen tab; a switch that is off
  Rgba field;            ///< choices and plain buttons
  Rgba fieldBorder;
  Rgba accent;  ///< the button that mends, a switch that is on, a menu's row under the pointer
  Rgba accentText;
  Rgba divider;
  Rgba menuDivider;
  Rgba folder;  ///< the folder's symbol, where the desktop has none of its own

  Rgba blue, cyan, orange, pink, purple;

  Rgba series(SeriesColor color) const;
};

const Palette& palette(ColorScheme scheme);

}  // namespace pallimo::ui
