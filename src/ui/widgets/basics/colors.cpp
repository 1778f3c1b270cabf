// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/colors.h"

#include <cmath>

namespace pallimo::ui::widgets {
namespace {

int mixed(int below, int above, double share) {
  return static_cast<int>(std::lround(below + (above - below) * share));
}

}  // namespace

QColor toColor(const Rgba& rgba) { return {rgba.red, rgba.green, rgba.blue, rgba.alpha}; }

QColor blended(const QColor& below, const QColor& above, double opacity) {
  const double share = opacity * above.alphaF();
  return {mixed(below.red(), above.red(), share), mixed(below.green(), above.green(), share),
          mixed(below.blue(), above.blue(), share)};
}

}  // namespace pallimo::ui::widgets
