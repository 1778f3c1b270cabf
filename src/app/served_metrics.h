// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/models/general_model.h"
#include "app/start/make_platform.h"
#include "app/start/platform.h"
#include "base/subscription.h"
#include "ports/metrics_server.h"
#include "serving/current_metrics.h"

namespace pallimo::app {

/// What `--serve` does, with a window and without: listens, and lets what is served follow the
/// samples. Main thread; ends with the process.
class ServedMetrics {
 public:
  explicit ServedMetrics(std::string version);

  /// Listens before there is a model, so that a run that can't serve does nothing else either.
  std::optional<StartError> listen(const Platform& platform, const ports::ListenAddress& address);
  /// Once, before sampling starts. The model outlives this object.
  void follow(const Platform& platform, GeneralModel& general);

 private:
  /// Shared with the server's threads and the delivery thread.
  const std::shared_ptr<serving::CurrentMetrics> metrics_;
  base::Subscription cleared_;
};

}  // namespace pallimo::app
