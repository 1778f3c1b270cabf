// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

namespace pallimo::helper_link {

/// The helper manager, as the sampling engine sees it. Any thread.
class SamplingGate {
 public:
  virtual ~SamplingGate() = default;

  /// The helper is installed and may be used.
  virtual bool isAuthorized() const = 0;
  /// Removal or update of the helper is under way.
  virtual bool isRequestedToUninstall() const = 0;
  /// Whether a sample may be asked for, and one that comes may be shown.
  bool isOpen() const { return isAuthorized() && !isRequestedToUninstall(); }
  /// Asks the helper for one sample of `msSampling` milliseconds. One-way; never blocks.
  virtual void requestPowermetrics(bool includeGPU, double msSampling) = 0;
};

}  // namespace pallimo::helper_link
