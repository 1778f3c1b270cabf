// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <vector>

#include "base/text_format.h"
#include "ui/panel.h"
#include "unit/ui/counting_random.h"

namespace pallimo::ui {

/// Lines of text, so that a panel can be compared with what a test writes down.
using Drawing = std::vector<std::string>;

inline std::string colorName(SeriesColor color) {
  switch (color) {
    case SeriesColor::blue:
      return "blue";
    case SeriesColor::cyan:
      return "cyan";
    case SeriesColor::orange:
      return "orange";
    case SeriesColor::pink:
      return "pink";
    case SeriesColor::purple:
      return "purple";
  }
  return "none";
}

inline std::string drawn(const PanelValue& value) {
  const std::string down = value.labelDown.empty() ? "" : "/" + value.labelDown;
  return value.labelUp + down + " " + value.value + " " + colorName(value.color);
}

/// "65: PKG 14.31 blue" for each column; two values that share one have " + " between them, a label
/// of two lines a slash.
inline Drawing columnsOf(const Panel& panel) {
  Drawing drawing;
  for (const ValueColumn& column : panel.columns) {
    std::string line = base::formatFixed(column.width, 0) + ": ";
    for (std::size_t i = 0; i < column.values.size(); ++i) {
      if (i > 0) line += " + ";
      line += drawn(column.values[i]);
    }
    drawing.push_back(line);
  }
  return drawing;
}

/// "cyan 0.500 0.250" for each series, in drawing order.
inline Drawing seriesOf(const Panel& panel) {
  Drawing drawing;
  for (const GraphData& data : panel.graph.datas) {
    std::string line = colorName(data.color);
    for (const double fraction : data.data) line += " " + base::formatFixed(fraction, 3);
    drawing.push_back(line);
  }
  return drawing;
}

/// "CORE MIN 46 45" for each series: what it says of each of its samples.
inline Drawing seriesTextsOf(const Panel& panel) {
  Drawing drawing;
  for (const SeriesText& text : panel.seriesTexts) {
    std::string line = text.label;
    for (const double value : text.values) line += " " + formatValue(text.format, value);
    drawing.push_back(line);
  }
  return drawing;
}

inline std::vector<std::string> idsOf(const Panel& panel) {
  std::vector<std::string> ids;
  for (const GraphData& data : panel.graph.datas) ids.push_back(data.id);
  return ids;
}

/// A history of these values, newest first.
inline modules::MetricHistory::Snapshot history(std::vector<double> newest) {
  const std::size_t length = newest.size();
  return {std::move(newest), length};
}

}  // namespace pallimo::ui
