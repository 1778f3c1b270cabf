// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QString>
#include <string_view>

namespace pallimo::ui::widgets {

/// UTF-8 as Qt's text.
inline QString toText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace pallimo::ui::widgets
