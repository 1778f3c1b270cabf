// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

namespace pallimo::ui {

/// How a figure is written. All with a decimal point whatever the user's locale is; what is not a
/// number is "nan".
enum class ValueFormat {
  twoDecimals,  ///< W, GHz: "14.31"
  whole,        ///< degrees: "59"
  degrees,      ///< two decimals below 100, one from 100 on, so that the text keeps its width
  /// A fraction, written as its percentage. One decimal from 1.0 (100 %) on, else two: the fraction
  /// decides, before any rounding, so that 0.99999 is "100.00" and 1 is "100.0".
  percent,
};

/// Pure, any thread.
std::string formatValue(ValueFormat format, double value);

}  // namespace pallimo::ui
