// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "privacy/private_texts.h"

#include "privacy/private_forms.h"
#include "privacy/private_homes.h"
#include "privacy/product_name.h"
#include "privacy/text_span.h"

namespace pallimo::privacy {

namespace {

/// A text and which of its characters are hidden.
class Masked {
 public:
  explicit Masked(std::string_view text) : text_(text), isHidden_(text.size(), false) {}

  void hide(const TextSpans& spans) {
    for (const TextSpan& span : spans) {
      for (std::size_t i = span.begin; i < span.end; ++i) isHidden_[i] = true;
    }
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
  const std::string_view text_;
  std::vector<bool> isHidden_;
};

}  // namespace

PrivateTexts::PrivateTexts(const std::vector<std::string>& words) {
  for (const std::string& word : words) {
    if (word.size() > 1) words_.push_back({PrivateWord(word), isProductName(word)});
  }
}

std::string PrivateTexts::shown(std::string_view text) const { return shown(text, false); }

std::string PrivateTexts::shownProduct(std::string_view text) const { return shown(text, true); }

std::string PrivateTexts::shown(std::string_view text, bool isProduct) const {
  Masked masked(text);
  for (const auto& [word, isProductName] : words_) {
    if (!isProduct || !isProductName) masked.hide(word.spansIn(text));
  }
  masked.hide(spansOfHomes(text));
  masked.hide(spansOfForms(text));
  std::string line = masked.text();
  if (line.size() > kLongestShown) line = line.substr(0, kLongestShown) + "...";
  return line;
}

}  // namespace pallimo::privacy
