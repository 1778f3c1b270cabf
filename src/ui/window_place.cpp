// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/window_place.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

namespace pallimo::ui {

namespace {

// No desktop is as large as that, and sums of such numbers still fit.
constexpr int kFurthest = 1'000'000;

bool isPossible(int coordinate) { return coordinate >= -kFurthest && coordinate <= kFurthest; }

int overlap(int begin, int length, int otherBegin, int otherLength) {
  return std::min(begin + length, otherBegin + otherLength) - std::max(begin, otherBegin);
}

bool isInReach(const DesktopArea& window, const DesktopArea& screen) {
  return overlap(window.corner.x, window.width, screen.corner.x, screen.width) >=
             std::min(kReachableWidth, window.width) &&
         overlap(window.corner.y, kReachableHeight, screen.corner.y, screen.height) >=
             kReachableHeight;
}

WindowPlace movedInto(const DesktopArea& window, const DesktopArea& screen) {
  const int right = screen.corner.x + std::max(0, screen.width - window.width);
  const int bottom = screen.corner.y + std::max(0, screen.height - window.height);
  return {std::clamp(window.corner.x, screen.corner.x, right),
          std::clamp(window.corner.y, screen.corner.y, bottom)};
}

std::int64_t squaredDistance(const WindowPlace& a, const WindowPlace& b) {
  const std::int64_t x = a.x - b.x;
  const std::int64_t y = a.y - b.y;
  return x * x + y * y;
}

}  // namespace

std::string windowPlaceText(const WindowPlace& place) {
  return std::to_string(place.x) + " " + std::to_string(place.y);
}

std::optional<WindowPlace> windowPlaceFrom(std::string_view text) {
  WindowPlace place;
  const char* const end = text.data() + text.size();
  const auto x = std::from_chars(text.data(), end, place.x);
  if (x.ec != std::errc() || x.ptr == end || *x.ptr != ' ') return std::nullopt;
  const auto y = std::from_chars(x.ptr + 1, end, place.y);
  if (y.ec != std::errc() || y.ptr != end) return std::nullopt;
  if (!isPossible(place.x) || !isPossible(place.y)) return std::nullopt;
  return place;
}

WindowPlace placeOnScreens(const DesktopArea& window, std::span<const DesktopArea> screens) {
  WindowPlace nearest = window.corner;
  std::int64_t shortest = std::numeric_limits<std::int64_t>::max();
  for (const DesktopArea& screen : screens) {
    if (isInReach(window, screen)) return window.corner;
    const WindowPlace moved = movedInto(window, screen);
    const std::int64_t distance = squaredDistance(moved, window.corner);
    if (distance < shortest) {
      shortest = distance;
      nearest = moved;
    }
  }
  return nearest;
}

}  // namespace pallimo::ui
