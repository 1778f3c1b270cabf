// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace pallimo::fuzz {

/// Ends the run, so that the fuzzer keeps the input, when something does not hold.
inline void require(bool holds) {
  if (!holds) std::abort();
}

/// Whether a terminal would take any of it for more than letters: the control characters of ASCII,
/// and those that ISO 8859 puts behind them, in UTF-8 or as single bytes (the latter are no UTF-8,
/// which is looked at elsewhere).
inline bool hasControlCharacters(std::string_view text) {
  const auto isControl = [](unsigned char c) { return c < 0x20 || c == 0x7F; };
  if (std::any_of(text.begin(), text.end(), isControl)) return true;
  for (std::size_t at = text.find('\xC2'); at < text.size(); at = text.find('\xC2', at + 1)) {
    if (at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0) return true;
  }
  return false;
}

}  // namespace pallimo::fuzz
