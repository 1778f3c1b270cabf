// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/text_format.h"

#include <locale.h>
#if __has_include(<xlocale.h>)
#include <xlocale.h>  // Apple declares uselocale here
#endif

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>

#include "base/short_decimal.h"

namespace pallimo::base {

namespace {

locale_t cLocale() {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  return locale;
}

}  // namespace

CLocaleScope::CLocaleScope() : previous_(uselocale(cLocale())) {}

CLocaleScope::~CLocaleScope() { uselocale(static_cast<locale_t>(previous_)); }

void appendFixed(std::string& out, double value, int decimals) {
  if (appendShortDecimal(out, value, decimals)) return;
  if (std::isnan(value)) {
    out += "nan";
    return;
  }
  const CLocaleScope scope;
  std::array<char, 64> buffer{};
  const int length = std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
  if (length < 0) return;
  const auto size = static_cast<std::size_t>(length);
  if (size < buffer.size()) {
    out.append(buffer.data(), size);
    return;
  }
  // 1e300 has three hundred digits: format again into a text of the size just learnt.
  const std::size_t start = out.size();
  out.resize(start + size + 1);
  std::snprintf(out.data() + start, size + 1, "%.*f", decimals, value);
  out.resize(start + size);
}

std::string formatFixed(double value, int decimals) {
  std::string text;
  appendFixed(text, value, decimals);
  return text;
}

}  // namespace pallimo::base
