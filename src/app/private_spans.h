// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pallimo::app {

// Where in a text something private stands. Pure; the spans may overlap.

/// Bytes from `begin` up to `end`.
struct TextSpan {
  std::size_t begin = 0;
  std::size_t end = 0;
};
using TextSpans = std::vector<TextSpan>;

/// A word to look for, whatever the way in which its letters beyond ASCII are written: "jörg" is
/// also "JÖRG", "jo" and a diaeresis, "J%C3%B6rg" and "j\u00f6rg". Between its ASCII parts anything
/// beyond ASCII counts, with the ASCII letter that a mark of its own may follow.
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

/// Paths into somebody's home, up to the text's end: they may hold spaces. With slashes of either
/// kind, escaped or not, and with "~".
TextSpans spansOfHomes(std::string_view text);

/// What has the form of a serial number, of a UUID, of a network card's address or of an e-mail
/// address, also inside a longer word.
TextSpans spansOfForms(std::string_view text);

}  // namespace pallimo::app
