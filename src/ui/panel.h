// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "modules/module_model_frequency.h"
#include "modules/module_model_power.h"
#include "modules/module_model_temperature.h"
#include "modules/module_model_utilization.h"
#include "ports/random_numbers.h"
#include "ui/display_settings.h"
#include "ui/graph_data.h"

namespace pallimo::ui {

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

/// What a panel shows, ready to be painted.
struct Panel {
  ModuleTitle title;
  std::vector<ValueColumn> columns;  ///< from left to right
  GraphView graph;
  double height = 0;  ///< of the frame, points
  /// For each series of the graph what the read-out under the pointer calls it, and how it writes a
  /// value of it; in the order of `graph.datas`.
  std::vector<std::string> seriesLabels;
  bool operator==(const Panel&) const = default;
};

// Each builds its panel from what the model holds at one moment, with fresh series ids. Pure but
// for the ids.
Panel powerPanel(const modules::ModuleModelPower::Snapshot& model, ports::RandomNumbers& random);
Panel frequencyPanel(const modules::ModuleModelFrequency::Snapshot& model,
                     const DisplaySettings& settings, ports::RandomNumbers& random);
Panel temperaturePanel(const modules::ModuleModelTemperature::Snapshot& model,
                       const DisplaySettings& settings, ports::RandomNumbers& random);
Panel utilizationPanel(const modules::ModuleModelUtilization::Snapshot& model,
                       const DisplaySettings& settings, ports::RandomNumbers& random);

}  // namespace pallimo::ui
