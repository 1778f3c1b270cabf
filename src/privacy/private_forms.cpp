// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "privacy/private_forms.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "privacy/ascii_letters.h"

namespace pallimo::privacy {

namespace {

using namespace letters;

constexpr std::size_t kShortestSerialNumber = 10;

/// Adds each longest run of characters of the kind that is private.
template <typename Belongs, typename IsPrivate>
void addRuns(TextSpans& spans, std::string_view text, Belongs belongs, IsPrivate isPrivate) {
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t end = begin;
    while (end < text.size() && belongs(text[end])) ++end;
    if (isPrivate(text.substr(begin, end - begin))) spans.push_back({begin, end});
    begin = end + 1;
  }
}

/// How often letters and digits take turns.
int turnsIn(std::string_view run) {
  int turns = 0;
  for (std::size_t i = 1; i < run.size(); ++i) turns += isDigit(run[i]) != isDigit(run[i - 1]);
  return turns;
}

/// Words in small or mixed letters have digits too, at one end mostly: "macbookpro18". Those of
/// serial numbers stand in between.
template <int FewestTurns>
bool isSerialNumber(std::string_view run) {
  return run.size() >= kShortestSerialNumber && turnsIn(run) >= FewestTurns;
}

void addSerialNumbers(TextSpans& spans, std::string_view text) {
  const auto isUpperOrDigit = [](char letter) { return isUpper(letter) || isDigit(letter); };
  const auto isLowerOrDigit = [](char letter) { return isLower(letter) || isDigit(letter); };
  const auto isAny = [](char letter) { return isLatin(letter) || isDigit(letter); };
  addRuns(spans, text, isUpperOrDigit, isSerialNumber<1>);
  addRuns(spans, text, isLowerOrDigit, isSerialNumber<2>);
  addRuns(spans, text, isAny, isSerialNumber<3>);
}

/// Whether it is hexadecimal digits, with joints at each of the places and nowhere else.
template <std::size_t Count>
bool isHexJoinedAt(const std::array<std::size_t, Count>& places, std::string_view joints,
                   std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isJoint = std::find(places.begin(), places.end(), i) != places.end();
    if (isJoint ? joints.find(text[i]) == std::string_view::npos : !isHex(text[i])) return false;
  }
  return true;
}

/// Wherever they stand: a name or a word may be joined to them.
template <std::size_t Size, std::size_t Count>
void addJoined(TextSpans& spans, std::string_view text,
               const std::array<std::size_t, Count>& places, std::string_view joints) {
  for (std::size_t at = 0; at + Size <= text.size(); ++at) {
    if (isHexJoinedAt(places, joints, text.substr(at, Size))) spans.push_back({at, at + Size});
  }
}

bool isMailAddress(std::string_view run) {
  const std::size_t at = run.find('@');
  return at != std::string_view::npos && at > 0 && run.find('.', at) != std::string_view::npos;
}

}  // namespace

TextSpans spansOfForms(std::string_view text) {
  TextSpans spans;
  addSerialNumbers(spans, text);
  addJoined<36>(spans, text, std::array<std::size_t, 4>{8, 13, 18, 23}, "-_");
  addJoined<17>(spans, text, std::array<std::size_t, 5>{2, 5, 8, 11, 14}, ":-_");
  const auto isOfMail = [](char letter) {
    return isOfAWord(letter) || std::string_view("@.-_+").find(letter) != std::string_view::npos;
  };
  addRuns(spans, text, isOfMail, isMailAddress);
  return spans;
}

}  // namespace pallimo::privacy
