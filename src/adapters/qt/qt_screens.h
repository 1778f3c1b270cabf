// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/screens.h"

namespace pallimo::adapters::qt {

/// The displays that Qt's window system has. Without a QGuiApplication, as in a run without a
/// window, there are none. Main thread.
class QtScreens final : public ports::Screens {
 public:
  std::size_t count() const override;
  std::optional<ports::Screen> mainScreen() const override;
};

}  // namespace pallimo::adapters::qt
