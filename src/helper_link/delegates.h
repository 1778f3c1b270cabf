// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>

#include "base/bytes.h"

namespace pallimo::helper_link {

// What the manager asks of the parts above it. It holds each by std::weak_ptr; a call through a
// link whose target is gone is skipped silently.

/// The sampling engine, as the helper link sees it.
class PowerMetricsModelDelegate {
 public:
  virtual ~PowerMetricsModelDelegate() = default;

  /// The manager's isAuthorized after a re-evaluation: true starts sampling, false stops it.
  /// Any thread.
  virtual void setAuthorized(bool flag) = 0;
  /// Ends sampling at once. Main thread.
  virtual void stopTimer() = 0;
  /// One result of the helper; absent when the run gave no document. Delivery thread.
  virtual void handleResult(std::optional<base::Bytes> bytes) = 0;
};

/// The main content, which re-reads the manager's flags when it is told to. Any thread.
class ContentModelDelegate {
 public:
  virtual ~ContentModelDelegate() = default;
  virtual void update() = 0;
};

/// The more-button menu. Any thread.
class MoreButtonModelDelegate {
 public:
  virtual ~MoreButtonModelDelegate() = default;
  virtual void notifyChange() = 0;
};

/// The utilisation module. The link is kept; nothing is asked of it.
class UtilizationModelDelegate {
 public:
  virtual ~UtilizationModelDelegate() = default;
};

}  // namespace pallimo::helper_link
