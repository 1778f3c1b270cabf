// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/settings_text.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "base/text_format.h"

namespace pallimo::adapters::qt {

namespace {

bool isWordForTrue(const std::string& text) {
  std::string word;
  for (const char letter : text) {
    word += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return word == "true" || word == "yes";
}

}  // namespace

std::string textOfBool(bool value) { return value ? "true" : "false"; }

std::string textOfInteger(std::int64_t value) { return std::to_string(value); }

bool boolOfText(const std::string& text) {
  const double number = doubleOfText(text);
  return number != 0 && !std::isnan(number);
}

std::int64_t integerOfText(const std::string& text) {
  constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
  // Whole numbers are read as such: a double has only 53 bits.
  char* end = nullptr;
  const long long whole = std::strtoll(text.c_str(), &end, 10);
  if (end != text.c_str() && *end == '\0') return whole;
  const double number = doubleOfText(text);
  if (std::isnan(number)) return 0;
  if (number <= static_cast<double>(kLowest)) return kLowest;
  if (number >= static_cast<double>(kHighest)) return kHighest;
  return static_cast<std::int64_t>(number);
}

double doubleOfText(const std::string& text) {
  if (isWordForTrue(text)) return 1;
  const base::CLocaleScope cLocale;
  return std::strtod(text.c_str(), nullptr);
}

}  // namespace pallimo::adapters::qt
