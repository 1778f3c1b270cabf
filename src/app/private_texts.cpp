// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/private_texts.h"

#include <algorithm>
#include <array>

namespace pallimo::app {

namespace {

constexpr std::size_t kLongestWordAlone = 3;
constexpr std::size_t kShortestSerialNumber = 10;

constexpr std::array<std::string_view, 12> kProductNames = {"macbook", "studio", "apple", "local",
                                                            "ultra",   "imac",   "mini",  "book",
                                                            "mac",     "air",    "pro",   "max"};

constexpr std::array<std::string_view, 4> kHomes = {"/users/", "/home/", "/var/root",
                                                    "/private/var/"};
constexpr std::string_view kRootsHome = "/root";

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }
bool isUpper(char letter) { return letter >= 'A' && letter <= 'Z'; }
bool isLower(char letter) { return letter >= 'a' && letter <= 'z'; }
/// Letters of other alphabets included: their bytes are no ends of a word.
bool isOfAWord(char letter) {
  return isDigit(letter) || isUpper(letter) || isLower(letter) || (letter & 0x80) != 0;
}

std::string lowered(std::string_view text) {
  std::string low(text);
  for (char& letter : low) {
    if (isUpper(letter)) letter = static_cast<char>(letter - 'A' + 'a');
  }
  return low;
}

/// Whether it is product names, with nothing but digits and punctuation between them.
bool isProductName(std::string_view word) {
  bool hasName = false;
  while (!word.empty()) {
    const auto* name = std::find_if(kProductNames.begin(), kProductNames.end(),
                                    [&](std::string_view one) { return word.starts_with(one); });
    if (name != kProductNames.end()) {
      word.remove_prefix(name->size());
      hasName = true;
    } else if (isDigit(word.front()) || !isOfAWord(word.front())) {
      word.remove_prefix(1);
    } else {
      return false;
    }
  }
  return hasName;
}

/// A text and which of its characters are hidden.
class Masked {
 public:
  explicit Masked(std::string_view text)
      : text_(text), low_(lowered(text)), isHidden_(text.size(), false) {}

  void hideWord(const std::string& word) {
    for (std::size_t at = low_.find(word); at != std::string::npos; at = low_.find(word, at + 1)) {
      if (word.size() <= kLongestWordAlone && !standsAlone(at, at + word.size())) continue;
      hide(at, at + word.size());
    }
  }

  void hideHomes() {
    for (const std::string_view home : kHomes) hideFrom(low_.find(home));
    // A word of many paths, of a document's keys too: only at the beginning of one.
    const std::size_t root = low_.find(kRootsHome);
    const bool begins = root != std::string::npos && (root == 0 || endsAWord(text_[root - 1]));
    if (begins && standsAlone(root, root + kRootsHome.size())) hideFrom(root);
  }

  /// Runs of letters and digits, and of those with what joins an address's or a UUID's parts.
  void hideForms() {
    forEachRun("", [](std::string_view run) { return isSerialNumber(run); });
    forEachRun("-", [](std::string_view run) { return isUuid(run); });
    forEachRun(":", [](std::string_view run) { return isCardAddress(run); });
    forEachRun("@.-_+", [](std::string_view run) { return isMailAddress(run); });
  }

  std::string text() const {
    std::string shown;
    for (std::size_t i = 0; i < text_.size(); ++i) {
      if (!isHidden_[i]) {
        shown += text_[i] >= ' ' && text_[i] <= '~' ? text_[i] : '?';
      } else if (i == 0 || !isHidden_[i - 1]) {
        shown += PrivateTexts::kHidden;
      }
    }
    return shown;
  }

 private:
  void hide(std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) isHidden_[i] = true;
  }

  void hideFrom(std::size_t begin) {
    if (begin != std::string::npos) hide(begin, text_.size());
  }

  static bool endsAWord(char letter) { return !isOfAWord(letter) && letter != ']'; }

  bool standsAlone(std::size_t begin, std::size_t end) const {
    return (begin == 0 || !isOfAWord(text_[begin - 1])) &&
           (end == text_.size() || !isOfAWord(text_[end]));
  }

  template <typename IsPrivate>
  void forEachRun(std::string_view joints, IsPrivate isPrivate) {
    const auto belongs = [&](char letter) {
      return isOfAWord(letter) || joints.find(letter) != std::string_view::npos;
    };
    for (std::size_t begin = 0; begin < text_.size();) {
      std::size_t end = begin;
      while (end < text_.size() && belongs(text_[end])) ++end;
      if (isPrivate(text_.substr(begin, end - begin))) hide(begin, end);
      begin = end + 1;
    }
  }

  static bool isSerialNumber(std::string_view run) {
    return run.size() >= kShortestSerialNumber && std::any_of(run.begin(), run.end(), isDigit) &&
           std::any_of(run.begin(), run.end(), isUpper) &&
           std::all_of(run.begin(), run.end(),
                       [](char letter) { return isDigit(letter) || isUpper(letter); });
  }

  static bool isHex(char letter) {
    return isDigit(letter) || (letter >= 'a' && letter <= 'f') || (letter >= 'A' && letter <= 'F');
  }

  /// Whether the run is hexadecimal digits with `joint` at each of the places and nowhere else.
  template <std::size_t Count>
  static bool isHexJoinedAt(const std::array<std::size_t, Count>& places, char joint,
                            std::string_view run) {
    for (std::size_t i = 0; i < run.size(); ++i) {
      const bool isJoint = std::find(places.begin(), places.end(), i) != places.end();
      if (isJoint ? run[i] != joint : !isHex(run[i])) return false;
    }
    return true;
  }

  static bool isUuid(std::string_view run) {
    constexpr std::array<std::size_t, 4> kJoints = {8, 13, 18, 23};
    return run.size() == 36 && isHexJoinedAt(kJoints, '-', run);
  }

  static bool isCardAddress(std::string_view run) {
    constexpr std::array<std::size_t, 5> kJoints = {2, 5, 8, 11, 14};
    return run.size() == 17 && isHexJoinedAt(kJoints, ':', run);
  }

  static bool isMailAddress(std::string_view run) {
    const std::size_t at = run.find('@');
    return at != std::string_view::npos && at > 0 && run.find('.', at) != std::string_view::npos;
  }

  const std::string_view text_;
  const std::string low_;
  std::vector<bool> isHidden_;
};

}  // namespace

PrivateTexts::PrivateTexts(const std::vector<std::string>& words) {
  for (const std::string& word : words) {
    std::string low = lowered(word);
    if (low.size() > 1 && !isProductName(low)) words_.push_back(std::move(low));
  }
}

std::string PrivateTexts::shown(std::string_view text) const {
  Masked masked(text);
  for (const std::string& word : words_) masked.hideWord(word);
  masked.hideHomes();
  masked.hideForms();
  std::string line = masked.text();
  if (line.size() > kLongestShown) line = line.substr(0, kLongestShown) + "...";
  return line;
}

}  // namespace pallimo::app
