// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/refusal_log.h"

#include <string>

#include "helper/powermetrics_runs.h"

namespace pallimo::helper {

namespace {

std::string lineFor(Refusal refusal) {
  switch (refusal) {
    case Refusal::badPeriod:
      return "request refused: the sampling period is not within 1 to 3600000 ms";
    case Refusal::tooManyRuns:
      return "request refused: " + std::to_string(kMostRuns) + " runs are under way";
    case Refusal::tooManyWaitingDocuments:
      return "request refused: too many documents wait for an earlier run";
  }
  return "request refused";
}

/// 12345 is "12,345".
std::string grouped(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t end = digits.size(); end > 3; end -= 3) digits.insert(end - 3, ",");
  return digits;
}

}  // namespace

void RefusalLog::add(Refusal refusal) {
  const auto reason = static_cast<std::size_t>(refusal);
  const std::uint64_t count = ++counts_[reason];
  if (count == 1) log_.write(lineFor(refusal));
  if (count % kRefusalsPerLine == 0) writeCount(reason);
}

void RefusalLog::endSeries() {
  for (std::size_t reason = 0; reason < kReasons; ++reason) {
    if (counts_[reason] > 1 && counts_[reason] % kRefusalsPerLine != 0) writeCount(reason);
    counts_[reason] = 0;
  }
}

void RefusalLog::writeCount(std::size_t reason) {
  log_.write(lineFor(static_cast<Refusal>(reason)) + " (" + grouped(counts_[reason]) + " times)");
}

}  // namespace pallimo::helper
