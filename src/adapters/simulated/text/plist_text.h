// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pallimo::adapters::simulated {

/// Writes a property list as XML, line by line as powermetrics does, nothing indented. Keys and
/// texts are written as they are given: they contain none of XML's special characters.
class PlistText {
 public:
  /// What the document holds.
  enum class Top { dictionary, array };

  /// Begins the document and its dictionary or array.
  explicit PlistText(Top top = Top::dictionary);

  void boolean(std::string_view key, bool value);
  void integer(std::string_view key, std::int64_t value);
  /// Six significant digits, "0.0412716", "1.09e+09"; `<real>nan</real>` for not-a-number.
  void real(std::string_view key, double value);
  void text(std::string_view key, std::string_view value);
  /// UTC, in whole seconds since 1970.
  void date(std::string_view key, std::int64_t seconds);

  void beginDictionary();
  void beginDictionary(std::string_view key);
  void endDictionary();
  void beginArray(std::string_view key);
  void endArray();

  /// Ends the dictionary or array and the document, and hands it over.
  std::string take();

 private:
  void entry(std::string_view key, std::string_view kind, std::string_view value);

  Top top_;
  std::string text_;
};

}  // namespace pallimo::adapters::simulated
