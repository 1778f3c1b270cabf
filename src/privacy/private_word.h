// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "privacy/text_span.h"

namespace pallimo::privacy {

/// A word to look for, whatever the way in which its letters beyond ASCII are written: "jörg" is
/// also "JÖRG", "jo" and a diaeresis, "J%C3%B6rg" and "j\u00f6rg". Between its ASCII parts anything
/// beyond ASCII counts, with the ASCII letter that a mark of its own may follow. Constant; any
/// thread.
class PrivateWord {
 public:
  /// Words of so many bytes and less hide only where they stand alone: digits, an escape and the
  /// "s" of a genitive end a word.
  static constexpr std::size_t kLongestAlone = 3;

  explicit PrivateWord(std::string_view word);

  TextSpans spansIn(std::string_view text) const;

 private:
  std::size_t endOfMatch(std::string_view low, std::size_t part, std::size_t at) const;

  std::vector<std::string> parts_;  ///< lower case; between two of them is something beyond ASCII
  bool isOnlyAlone_ = false;
};

}  // namespace pallimo::privacy
