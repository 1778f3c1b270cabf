// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "modules/module_model_frequency.h"
#include "modules/module_model_power.h"
#include "modules/module_model_temperature.h"
#include "modules/module_model_utilization.h"
#include "ports/random_numbers.h"
#include "ui/display_settings.h"
#include "ui/graph_data.h"
#include "ui/value_format.h"

namespace pallimo::ui {

/// Values of a series that a panel carries at most: a graph draws one a point of its width, and
/// none is wider. The one history that has no end is cut to it too.
inline constexpr std::size_t kGraphLength = modules::MetricHistory::kHistoryLength;

/// A panel's title row.
struct ModuleTitle {
  std::string labelLeft;   ///< the title
  std::string labelRight;  ///< the unit
  std::string help;
  bool operator==(const ModuleTitle&) const = default;
};

/// One formatted figure with its label.
struct PanelValue {
  std::string labelUp;    ///< the label; the upper one of two
  std::string labelDown;  ///< empty for a label of one line
  std::string value;
  SeriesColor color = SeriesColor::blue;
  bool operator==(const PanelValue&) const = default;
};

/// A column of the row of values, of fixed width: one value, or two that share it, one above the
/// other.
struct ValueColumn {
  std::vector<PanelValue> values;  ///< one or two
  double width = 0;                ///< points
  bool operator==(const ValueColumn&) const = default;
};

/// What a series says under the pointer.
struct SeriesText {
  std::string label;  ///< as over the figures; two lines become one
  ValueFormat format = ValueFormat::twoDecimals;
  /// Newest first, as `format` takes them: W, GHz, degrees of the display unit, fractions. Kept
  /// beside the series' fractions of the axis, since multiplying one of those back can round to
  /// another last digit than the figure above it.
  std::vector<double> values;
  bool operator==(const SeriesText&) const = default;
};

/// What a panel shows, ready to be painted.
struct Panel {
  ModuleTitle title;
  std::vector<ValueColumn> columns;  ///< from left to right
  GraphView graph;
  double height = 0;                    ///< of the frame, points
  std::vector<SeriesText> seriesTexts;  ///< in the order of `graph.datas`, one each
  bool operator==(const Panel&) const = default;
};

// Each builds its panel from what the model holds at one moment, with fresh series ids. Pure but
// for the ids, any thread.
//
// The order of the values and the order of the series differ on purpose, and so do the colours of
// the whole CPU's utilisation: cyan as a value, blue as a line.
Panel powerPanel(const modules::ModuleModelPower::Snapshot& model, ports::RandomNumbers& random);
Panel frequencyPanel(const modules::ModuleModelFrequency::Snapshot& model,
                     const DisplaySettings& settings, ports::RandomNumbers& random);
/// Histories are °C always; axis, values and help follow the display unit.
Panel temperaturePanel(const modules::ModuleModelTemperature::Snapshot& model,
                       const DisplaySettings& settings, ports::RandomNumbers& random);
Panel utilizationPanel(const modules::ModuleModelUtilization::Snapshot& model,
                       const DisplaySettings& settings, ports::RandomNumbers& random);

}  // namespace pallimo::ui
