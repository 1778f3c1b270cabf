// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/report_text.h"

namespace pallimo::app {

namespace {

constexpr std::size_t kNameWidth = 24;

}  // namespace

void ReportText::title(std::string_view line) {
  text_ += line;
  text_ += '\n';
}

void ReportText::section(std::string_view name) {
  text_ += '\n';
  text_ += name;
  text_ += '\n';
}

void ReportText::line(std::string_view name, std::string_view value) {
  text_ += "  ";
  text_ += name;
  if (!value.empty()) {
    text_.append(name.size() < kNameWidth ? kNameWidth - name.size() : 2, ' ');
    text_ += value;
  }
  text_ += '\n';
}

void ReportText::foreignLine(std::string_view name, std::string_view value) {
  line(name, shown(value));
}

void ReportText::productLine(std::string_view name, std::string_view value) {
  line(name, privateTexts_.shownProduct(value));
}

void ReportText::foreignName(std::string_view name, std::string_view value) {
  line(shown(name), value);
}

}  // namespace pallimo::app
