// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "privacy/private_texts.h"

namespace pallimo::app {

/// The text of a report: sections of lines with a name and a value. Names are ours; what comes from
/// outside is given as foreign and loses what is private. One thread.
class ReportText {
 public:
  explicit ReportText(privacy::PrivateTexts privateTexts)
      : privateTexts_(std::move(privateTexts)) {}

  void title(std::string_view line);
  void section(std::string_view name);
  /// A line whose value is made of our own words and of numbers.
  void line(std::string_view name, std::string_view value);
  /// A line whose value is somebody else's text.
  void foreignLine(std::string_view name, std::string_view value);
  /// The same where the value names a machine or a chip.
  void productLine(std::string_view name, std::string_view value);
  /// A line whose name is somebody else's text; the value is ours.
  void foreignName(std::string_view name, std::string_view value);
  /// A foreign text, fit for a line's value.
  std::string shown(std::string_view foreign) const { return privateTexts_.shown(foreign); }

  const std::string& text() const { return text_; }

 private:
  const privacy::PrivateTexts privateTexts_;
  std::string text_;
};

}  // namespace pallimo::app
