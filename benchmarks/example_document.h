// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/simulated/machines/machines.h"
#include "adapters/simulated/machines/powermetrics_document.h"
#include "base/bytes.h"

namespace pallimo::benchmarks {

/// The largest of the simulated machines: 24 processors, some three hundred keys in the SMC.
inline const adapters::simulated::MachineDescription& largestMachine() {
  return *adapters::simulated::findMachine("Mac Studio M2 Ultra");
}

/// A document as long as a large machine's captured ones, and there wherever this is built; `time`
/// is in seconds.
inline base::Bytes exampleDocument(double time = 10) {
  adapters::simulated::DocumentRequest request;
  request.startTime = 1'790'000'000;
  request.time = time;
  request.samplers = {.cpuPower = true, .gpuPower = true, .anePower = true, .thermal = false};
  return adapters::simulated::powermetricsDocument(largestMachine(), request);
}

}  // namespace pallimo::benchmarks
