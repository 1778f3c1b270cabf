// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>

namespace pallimo::ui {

/// Ties a switch to a state that somebody else owns. Main thread. Both are set and may be called as
/// long as what was built from them is shown.
struct SwitchBinding {
  std::function<bool()> isOn;  ///< asked each time the switch is shown
  std::function<void(bool)> setOn;
};

}  // namespace pallimo::ui
