// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/metric_model.h"

namespace pallimo::modules {

void MetricModel::updateView() { publish(); }

void MetricModel::followNotices(base::NotificationCentre& notifications) {
  clearDataNotice_ =
      notifications.observe(base::notification::kClearData, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->clearData();
      });
  updateViewNotice_ =
      notifications.observe(base::notification::kUpdateView, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->updateView();
      });
}

}  // namespace pallimo::modules
