// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/readout.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace pallimo::ui {

std::optional<std::size_t> sampleIndexAt(double x, double width) {
  // Asked this way round, so that what is not a number is beside the box too.
  if (!(x >= 0 && x <= width)) return std::nullopt;
  return static_cast<std::size_t>(std::round(width - x));
}

std::vector<ReadoutEntry> readoutEntries(const Panel& panel, std::size_t index) {
  std::vector<ReadoutEntry> entries;
  const std::size_t count = std::min(panel.seriesTexts.size(), panel.graph.datas.size());
  for (std::size_t i = 0; i < count; ++i) {
    const SeriesText& series = panel.seriesTexts[i];
    if (index >= series.values.size()) continue;
    entries.push_back({series.label, formatValue(series.format, series.values[index]),
                       panel.graph.datas[i].color});
  }
  return entries;
}

std::string ageText(std::chrono::system_clock::duration age) {
  constexpr std::int64_t kMinute = 60;
  constexpr std::int64_t kHour = 60 * kMinute;
  const auto text = [](std::int64_t number, const char* unit) {
    return std::to_string(number) + " " + unit + " ";
  };
  const std::int64_t seconds =
      std::max<std::int64_t>(0, std::chrono::round<std::chrono::seconds>(age).count());
  if (seconds < kMinute) return text(seconds, "s") + "ago";
  if (seconds < kHour) {
    return text(seconds / kMinute, "min") + text(seconds % kMinute, "s") + "ago";
  }
  return text(seconds / kHour, "h") + text(seconds % kHour / kMinute, "min") + "ago";
}

std::optional<Readout> readoutAt(double x, double width, const Panel& panel,
                                 std::span<const SampleTimes::TimePoint> times,
                                 std::chrono::system_clock::time_point now) {
  const auto index = sampleIndexAt(x, width);
  if (!index) return std::nullopt;
  std::vector<ReadoutEntry> entries = readoutEntries(panel, *index);
  if (entries.empty()) return std::nullopt;
  return Readout{width - static_cast<double>(*index), std::move(entries),
                 *index < times.size() ? ageText(now - times[*index]) : std::string()};
}

}  // namespace pallimo::ui
