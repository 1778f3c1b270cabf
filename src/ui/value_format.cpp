// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/value_format.h"

#include "base/text_format.h"

namespace pallimo::ui {

std::string formatValue(ValueFormat format, double value) {
  switch (format) {
    case ValueFormat::twoDecimals:
      return base::formatFixed(value, 2);
    case ValueFormat::whole:
      return base::formatFixed(value, 0);
    case ValueFormat::degrees:
      return base::formatFixed(value, value >= 100 ? 1 : 2);
    case ValueFormat::percent:
      return base::formatFixed(value * 100, value >= 1 ? 1 : 2);
  }
  return {};
}

}  // namespace pallimo::ui
