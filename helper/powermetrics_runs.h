// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "base/bytes.h"
#include "helper/powermetrics_command.h"
#include "helper/refusal_log.h"
#include "ports/child_processes.h"
#include "ports/system_log.h"

namespace pallimo::helper {

/// What all clients of one helper may use together.
inline constexpr std::size_t kMostRuns = 64;
/// Bytes of documents that wait for their turn (see ClientSession).
inline constexpr std::size_t kMostWaitingBytes = std::size_t{64} << 20;

/// One run of powermetrics. Destroying it ends the run at once.
class PowermetricsRun {
 public:
  virtual ~PowermetricsRun() = default;

  virtual bool isFinished() const = 0;
  /// The document of a finished run, once; nothing when the run gave none.
  virtual std::optional<base::Bytes> takeDocument() = 0;
};

/// Runs powermetrics, side by side, within the limits. Everything that makes a run give no document
/// is written to the log, one line each; refused requests are summed up (see RefusalLog). The
/// helper's one thread.
class PowermetricsRuns {
 public:
  struct Services {
    ports::ChildProcesses& children;
    ports::SystemLog& log;
  };

  PowermetricsRuns(Services services, PowermetricsTool tool);

  /// Starts one run; `finished` is called once, later, and may destroy the run. Returns nothing
  /// when the request is refused: a period outside the limits, or too much under way.
  std::unique_ptr<PowermetricsRun> start(double msSampling, bool includeGPU, std::uint64_t request,
                                         std::function<void()> finished);

 private:
  class Run;
  struct Usage {
    std::size_t runs = 0;
    std::size_t waitingBytes = 0;
  };

  std::unique_ptr<PowermetricsRun> refuse(Refusal refusal);

  const Services services_;
  const PowermetricsTool tool_;
  const std::shared_ptr<Usage> usage_;  // shared with the runs
  RefusalLog refusals_;
};

}  // namespace pallimo::helper
