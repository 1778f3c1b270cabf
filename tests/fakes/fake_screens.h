// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "ports/screens.h"

namespace pallimo::fakes {

/// Displays that the test connects, at first one of 1512 x 982 points at twice the resolution; the
/// first one has the menu bar. Main thread.
class FakeScreens final : public ports::Screens {
 public:
  void connect(std::vector<ports::Screen> screens) { screens_ = std::move(screens); }

  std::size_t count() const override { return screens_.size(); }
  std::optional<ports::Screen> mainScreen() const override {
    return screens_.empty() ? std::nullopt : std::optional(screens_.front());
  }

 private:
  std::vector<ports::Screen> screens_ = {{.width = 1512, .height = 982, .backingScaleFactor = 2}};
};

}  // namespace pallimo::fakes
