// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/palette.h"

#include <gtest/gtest.h>

#include <array>

namespace pallimo::ui {
namespace {

using enum SeriesColor;

constexpr std::array kSeriesColors = {blue, cyan, orange, pink, purple};

TEST(Palette, LightSeriesAreTheSystemsLightColours) {
  const Palette& light = palette(ColorScheme::light);
  EXPECT_EQ(light.series(blue), (Rgba{0x00, 0x7A, 0xFF}));
  EXPECT_EQ(light.series(cyan), (Rgba{0x32, 0xAD, 0xE6}));
  EXPECT_EQ(light.series(orange), (Rgba{0xFF, 0x95, 0x00}));
  EXPECT_EQ(light.series(pink), (Rgba{0xFF, 0x2D, 0x55}));
  EXPECT_EQ(light.series(purple), (Rgba{0xAF, 0x52, 0xDE}));
}

TEST(Palette, DarkSeriesAreTheSystemsDarkColours) {
  const Palette& dark = palette(ColorScheme::dark);
  EXPECT_EQ(dark.series(blue), (Rgba{0x0A, 0x84, 0xFF}));
  EXPECT_EQ(dark.series(cyan), (Rgba{0x64, 0xD2, 0xFF}));
  EXPECT_EQ(dark.series(orange), (Rgba{0xFF, 0x9F, 0x0A}));
  EXPECT_EQ(dark.series(pink), (Rgba{0xFF, 0x37, 0x5F}));
  EXPECT_EQ(dark.series(purple), (Rgba{0xBF, 0x5A, 0xF2}));
}

TEST(Palette, SeriesStandOutFromEachOtherAndFromThePanel) {
  for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
    const Palette& colors = palette(scheme);
    for (const SeriesColor one : kSeriesColors) {
      EXPECT_FALSE(colors.series(one) == colors.panel);
      for (const SeriesColor other : kSeriesColors) {
        EXPECT_EQ(colors.series(one) == colors.series(other), one == other);
      }
    }
  }
}

TEST(Palette, TitlesAreReadableOnPanelsAndOnTheWindow) {
  const auto brightness = [](Rgba color) { return color.red + color.green + color.blue; };
  constexpr int kContrast = 3 * 0x80;
  const Palette& light = palette(ColorScheme::light);
  EXPECT_GT(brightness(light.panel), brightness(light.text) + kContrast);
  EXPECT_GT(brightness(light.window), brightness(light.text) + kContrast);
  const Palette& dark = palette(ColorScheme::dark);
  EXPECT_LT(brightness(dark.panel) + kContrast, brightness(dark.text));
  EXPECT_LT(brightness(dark.window) + kContrast, brightness(dark.text));
}

TEST(Palette, TheMoreButtonShowsThatThePointerIsOverIt) {
  for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
    EXPECT_FALSE(palette(scheme).control == palette(scheme).controlHover);
  }
}

TEST(Palette, EveryColourIsOpaque) {
  for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
    const Palette& p = palette(scheme);
    for (const Rgba color :
         {p.window,     p.panel,        p.panelBorder,     p.text,   p.secondaryText, p.grid,
          p.control,    p.controlHover, p.controlSelected, p.field,  p.fieldBorder,   p.accent,
          p.accentText, p.divider,      p.menuDivider,     p.folder, p.blue,          p.cyan,
          p.orange,     p.pink,         p.purple}) {
      EXPECT_EQ(color.alpha, 255);
    }
  }
}

}  // namespace
}  // namespace pallimo::ui
