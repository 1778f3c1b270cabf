// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

namespace pallimo::sampling {

/// A metric module, as the engine sees it. Delivery thread.
class SampleConsumer {
 public:
  virtual ~SampleConsumer() = default;

  /// Takes the engine's current sample (or its own sensors) into values and histories.
  virtual void ingestSample() = 0;
};

/// The log, as the engine sees it. Delivery thread.
class RowLog {
 public:
  virtual ~RowLog() = default;

  /// Takes one row of the modules' current values.
  virtual void appendRow() = 0;
};

}  // namespace pallimo::sampling
