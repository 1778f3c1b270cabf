// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "privacy/private_word.h"

namespace pallimo::privacy {

/// Takes out of texts what would tell whose machine they come from, so that a report may be shown
/// to strangers. It knows the user's names by heart and the rest by its form. Constant; any thread.
///
/// Hidden are, upper and lower case alike:
/// - the words it was made with, wherever they stand; those of three bytes or less only where they
///   stand alone, and single letters nowhere (PrivateWord);
/// - a path into somebody's home, up to the text's end;
/// - what has the form of a serial number (ten letters and digits and more, some of both), of a
///   UUID, of a network card's address or of an e-mail address.
class PrivateTexts {
 public:
  static constexpr std::string_view kHidden = "(hidden)";
  static constexpr std::size_t kLongestShown = 60;

  explicit PrivateTexts(const std::vector<std::string>& words);

  /// The text without them, as one line of ASCII: any other character is a question mark, and what
  /// is too long is cut off with "...".
  std::string shown(std::string_view text) const;
  /// The same of what names a machine or a chip: "Max" stays there, whoever is called so.
  std::string shownProduct(std::string_view text) const;

 private:
  struct Word {
    PrivateWord word;
    bool isProductName = false;
  };

  std::string shown(std::string_view text, bool isProduct) const;

  std::vector<Word> words_;
};

}  // namespace pallimo::privacy
