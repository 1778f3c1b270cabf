// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/palette.h"

namespace pallimo::ui {

namespace {

constexpr Rgba rgb(std::uint32_t code) {
  return {static_cast<std::uint8_t>(code >> 16), static_cast<std::uint8_t>(code >> 8 & 0xFF),
          static_cast<std::uint8_t>(code & 0xFF)};
}

constexpr Palette kLight = {
    .window = rgb(0xECECEC),
    .panel = rgb(0xFFFFFF),
    .panelBorder = rgb(0xEBEBEB),
    .text = rgb(0x1D1D1F),
    .secondaryText = rgb(0x6E6E73),
    .grid = rgb(0x000000),
    .control = rgb(0xD9D9D9),
    .controlHover = rgb(0xCACACA),
    .controlSelected = rgb(0xD4D4D4),
    .field = rgb(0xFFFFFF),
    .fieldBorder = rgb(0xE5E5E5),
    .accent = rgb(0x007AFF),
    .accentText = rgb(0xFFFFFF),
    .divider = rgb(0xD4D4D4),
    .menuDivider = rgb(0xE5E5E5),
    .folder = rgb(0x54B0F0),
    .blue = rgb(0x007AFF),
    .cyan = rgb(0x32ADE6),
    .orange = rgb(0xFF9500),
    .pink = rgb(0xFF2D55),
    .purple = rgb(0xAF52DE),
};

constexpr Palette kDark = {
    .window = rgb(0x1E1E1F),
    .panel = rgb(0x2A2A2C),
    .panelBorder = rgb(0x3A3A3C),
    .text = rgb(0xF2F2F2),
    .secondaryText = rgb(0x9A9AA0),
    .grid = rgb(0xFFFFFF),
    .control = rgb(0x2F2F30),
    .controlHover = rgb(0x3E3E40),
    .controlSelected = rgb(0x343435),
    .field = rgb(0x3A3A3D),
    .fieldBorder = rgb(0x4E4E50),
    .accent = rgb(0x0A84FF),
    .accentText = rgb(0xFFFFFF),
    .divider = rgb(0x343435),
    .menuDivider = rgb(0x3F3F41),
    .folder = rgb(0x54B0F0),
    .blue = rgb(0x0A84FF),
    .cyan = rgb(0x64D2FF),
    .orange = rgb(0xFF9F0A),
    .pink = rgb(0xFF375F),
    .purple = rgb(0xBF5AF2),
};

}  // namespace

Rgba Palette::series(SeriesColor color) const {
  switch (color) {
    case SeriesColor::blue:
      return blue;
    case SeriesColor::cyan:
      return cyan;
    case SeriesColor::orange:
      return orange;
    case SeriesColor::pink:
      return pink;
    case SeriesColor::purple:
      return purple;
  }
  return text;
}

const Palette& palette(ColorScheme scheme) { return scheme == ColorScheme::dark ? kDark : kLight; }

}  // namespace pallimo::ui
