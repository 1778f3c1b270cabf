// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <optional>

namespace pallimo::ports {

/// One display.
struct Screen {
  double width = 0;               ///< points
  double height = 0;              ///< points
  double backingScaleFactor = 1;  ///< pixels per point
  bool operator==(const Screen&) const = default;
};

/// The displays that windows may stand on. Main thread.
class Screens {
 public:
  virtual ~Screens() = default;

  virtual std::size_t count() const = 0;
  /// The one with the menu bar; nothing when there is no display.
  virtual std::optional<Screen> mainScreen() const = 0;
};

}  // namespace pallimo::ports
