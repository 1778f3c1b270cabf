// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QFont>

namespace pallimo::ui::widgets {

/// Sizes of the system's text styles, in points of the screen's coordinates (the same everywhere,
/// whatever a system calls a point).
namespace text_size {
inline constexpr double kTitle2 = 17;
inline constexpr double kTitle3 = 15;
inline constexpr double kHeadline = 13;
inline constexpr double kBody = 13;
inline constexpr double kFootnote = 10;
}  // namespace text_size

/// The system's font. The smallest size is one point.
QFont systemFont(double size, QFont::Weight weight = QFont::Normal);

}  // namespace pallimo::ui::widgets
