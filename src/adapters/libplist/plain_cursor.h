// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace pallimo::adapters::libplist {

/// A place in an XML property list, moving over what is written in the one way that leaves nothing
/// to be argued about: tags without attributes, keys and texts without entities, decimal numbers,
/// dates, booleans, and dictionaries and arrays of those with nothing between them but white space
/// and comments, in one of which `powermetrics` keeps an entry. libplist is certain to accept that.
/// One thread.
///
/// Each function says whether there was such a thing. When there was none, broken or merely
/// unusual, the place is no longer defined, and libplist has to judge the document.
class PlainCursor {
 public:
  /// How deep the containers of one value are nested at most; a list of a core's states has two.
  static constexpr std::size_t kMaxNesting = 8;

  explicit PlainCursor(std::string_view bytes) : bytes_(bytes) {}

  std::size_t at() const { return at_; }
  /// Keys and values passed so far.
  std::size_t elements() const { return elements_; }

  /// Comments, too.
  void skipSpace();
  /// Unlike the others this stays where it is when it says no.
  bool take(std::string_view word);
  /// A whole key with its tags; its text.
  std::optional<std::string_view> takeKey();
  /// A whole value and the white space in front of it.
  bool takeValue();

 private:
  bool takeInnerValue();
  bool takeLeafOrOpen();
  bool open(bool isDictionary);
  bool close();
  bool takeOneOf(std::string_view letters);
  bool takeText();
  std::size_t takeDigits();
  bool takeInteger();
  bool takeReal();
  bool takeDate();

  const std::string_view bytes_;
  std::size_t at_ = 0;
  std::size_t elements_ = 0;
  std::size_t depth_ = 0;
  std::array<bool, kMaxNesting> isDictionary_{};
};

}  // namespace pallimo::adapters::libplist
