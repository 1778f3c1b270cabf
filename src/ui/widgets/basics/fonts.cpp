// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/fonts.h"

#include <QFontDatabase>
#include <algorithm>
#include <cmath>

namespace pallimo::ui::widgets {

QFont systemFont(double size, QFont::Weight weight) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(size))));
  font.setWeight(weight);
  return font;
}

}  // namespace pallimo::ui::widgets
