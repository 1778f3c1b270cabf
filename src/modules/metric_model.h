// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "base/notification_centre.h"
#include "base/observable.h"
#include "base/subscription.h"
#include "sampling/sample_steps.h"

namespace pallimo::modules {

/// What every metric module has in common: fed by the engine, emptied by "ClearData", announced by
/// "UpdateView".
///
/// Ingesting a sample announces nothing: it happens on the delivery thread, and observers hear of
/// it through "UpdateView", which the engine posts on the main queue afterwards.
class MetricModel : public base::Observable,
                    public sampling::SampleConsumer,
                    public std::enable_shared_from_this<MetricModel> {
 public:
  /// Sets the current values to 0, empties the histories, publishes. Any thread.
  virtual void clearData() = 0;
  /// Publishes and does nothing else. Any thread.
  void updateView();

 protected:
  /// Follows the two notices from now on; the centre does not keep the model alive. Called once by
  /// whoever creates the model, when a std::shared_ptr holds it.
  void followNotices(base::NotificationCentre& notifications);

 private:
  base::Subscription clearDataNotice_;
  base::Subscription updateViewNotice_;
};

}  // namespace pallimo::modules
