// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/control_palette.h"

#include "ui/widgets/basics/colors.h"

namespace pallimo::ui::widgets {

QPalette controlPalette(ColorScheme scheme) {
  const Palette& colors = colorsOf(scheme);
  QPalette control(toColor(colors.field), toColor(colors.panel));
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
    control.setColor(role, toColor(colors.panel));
  }
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    control.setColor(role, toColor(colors.text));
    control.setColor(QPalette::Disabled, role, toColor(colors.secondaryText));
  }
  control.setColor(QPalette::Highlight, toColor(colors.accent));
  control.setColor(QPalette::HighlightedText, toColor(colors.accentText));
  return control;
}

}  // namespace pallimo::ui::widgets
