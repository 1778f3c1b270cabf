// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/copy_values.h"

namespace pallimo::ui {

namespace {

std::string lineOf(const ModuleTitle& title, const PanelValue& figure) {
  std::string label = figure.labelUp;
  if (!figure.labelDown.empty()) label += " " + figure.labelDown;
  return title.labelLeft + "\t" + label + "\t" + figure.value + "\t" + title.labelRight + "\n";
}

}  // namespace

std::string copyValuesText(std::span<const Panel> panels) {
  std::string text;
  for (const Panel& panel : panels) {
    for (const ValueColumn& column : panel.columns) {
      for (const PanelValue& figure : column.values) text += lineOf(panel.title, figure);
    }
  }
  return text;
}

}  // namespace pallimo::ui
