// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "ports/system_log.h"

namespace pallimo::helper {

/// Why a request becomes no run.
enum class Refusal { badPeriod, tooManyRuns, tooManyWaitingDocuments };

/// How many refusals for one reason have one line in the log, after the first, which has its own.
inline constexpr std::uint64_t kRefusalsPerLine = 10'000;

/// Tells the log of refused requests without letting a client fill it. A series lasts until a
/// request is granted: the first refusal for a reason is written at once, then the count of those
/// of the series at every 10,000th, and at the series' end. Reasons are counted apart, so that a
/// client gains nothing by alternating between them. The helper's one thread.
class RefusalLog {
 public:
  explicit RefusalLog(ports::SystemLog& log) : log_(log) {}
  /// Ends the series.
  ~RefusalLog() { endSeries(); }
  RefusalLog(const RefusalLog&) = delete;
  RefusalLog& operator=(const RefusalLog&) = delete;

  void add(Refusal refusal);
  void endSeries();

 private:
  static constexpr std::size_t kReasons = 3;

  void writeCount(std::size_t reason);

  ports::SystemLog& log_;
  std::array<std::uint64_t, kReasons> counts_ = {};  // of the series
};

}  // namespace pallimo::helper
