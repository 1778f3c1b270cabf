// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/text/plist_text.h"

#include <time.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "base/text_format.h"

namespace pallimo::adapters::simulated {

namespace {

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

}  // namespace

PlistText::PlistText(Top top) : top_(top), text_(kHead) {
  text_.append(top == Top::dictionary ? "<dict>\n" : "<array>\n");
}

void PlistText::entry(std::string_view key, std::string_view kind, std::string_view value) {
  text_.append("<key>").append(key).append("</key><").append(kind).append(">").append(value);
  text_.append("</").append(kind).append(">\n");
}

void PlistText::boolean(std::string_view key, bool value) {
  text_.append("<key>").append(key).append(value ? "</key><true/>\n" : "</key><false/>\n");
}

void PlistText::integer(std::string_view key, std::int64_t value) {
  entry(key, "integer", std::to_string(value));
}

void PlistText::real(std::string_view key, double value) {
  if (std::isnan(value)) return entry(key, "real", "nan");
  const base::CLocaleScope scope;
  std::array<char, 32> digits{};
  std::snprintf(digits.data(), digits.size(), "%g", value);
  entry(key, "real", digits.data());
}

void PlistText::text(std::string_view key, std::string_view value) { entry(key, "string", value); }

void PlistText::date(std::string_view key, std::int64_t seconds) {
  const time_t moment = static_cast<time_t>(seconds);
  struct tm parts = {};
  gmtime_r(&moment, &parts);
  std::array<char, 64> digits{};
  std::snprintf(digits.data(), digits.size(), "%04d-%02d-%02dT%02d:%02d:%02dZ",
                parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min,
                parts.tm_sec);
  entry(key, "date", digits.data());
}

void PlistText::beginDictionary() { text_.append("<dict>\n"); }

void PlistText::beginDictionary(std::string_view key) {
  text_.append("<key>").append(key).append("</key>\n<dict>\n");
}

void PlistText::endDictionary() { text_.append("</dict>\n"); }

void PlistText::beginArray(std::string_view key) {
  text_.append("<key>").append(key).append("</key>\n<array>\n");
}

void PlistText::endArray() { text_.append("</array>\n"); }

std::string PlistText::take() {
  text_.append(top_ == Top::dictionary ? "</dict>\n" : "</array>\n").append("</plist>\n");
  return std::move(text_);
}

}  // namespace pallimo::adapters::simulated
