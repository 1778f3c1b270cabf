// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pallimo::ui {

// Where a window stands, from one run to the next. Points of the desktop, y downwards. Pure
// functions, any thread.

/// A window's upper left corner.
struct WindowPlace {
  int x = 0;
  int y = 0;
  bool operator==(const WindowPlace&) const = default;
};

/// A window, or the part of a screen that windows may use.
struct DesktopArea {
  WindowPlace corner;
  int width = 0;
  int height = 0;
  bool operator==(const DesktopArea&) const = default;
};

/// Keeps the place as a text. Main thread. Both are set.
struct WindowPlaceStore {
  std::function<std::optional<std::string>()> load;  ///< nothing when none was stored
  std::function<void(const std::string& text)> store;
};

/// Points of a window's upper edge that stay in reach: by these it can be taken hold of.
inline constexpr int kReachableWidth = 60;
inline constexpr int kReachableHeight = 30;

std::string windowPlaceText(const WindowPlace& place);

/// What windowPlaceText wrote; nothing for any other text.
std::optional<WindowPlace> windowPlaceFrom(std::string_view text);

/// Where `window` may stand: where it is, if enough of its upper edge lies on a screen; else as
/// near as it gets to that with all of it on the nearest screen. A window that is larger than the
/// screen keeps its upper left corner there. Without a screen it stays where it is.
WindowPlace placeOnScreens(const DesktopArea& window, std::span<const DesktopArea> screens);

}  // namespace pallimo::ui
