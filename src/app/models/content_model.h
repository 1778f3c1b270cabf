// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "app/models/general_model.h"
#include "base/observable.h"
#include "helper_link/delegates.h"
#include "ports/main_queue.h"

namespace pallimo::app {

/// Tells the main content to read the helper manager's flags again; has no state of its own.
/// Created on the main thread when the main content is first shown, with or without a window.
class ContentModel final : public base::Observable,
                           public helper_link::ContentModelDelegate,
                           public std::enable_shared_from_this<ContentModel> {
 public:
  /// Registers with the helper manager and has it ask the helper whether it answers. On a processor
  /// that is not Apple silicon the model exists and does nothing.
  static std::shared_ptr<ContentModel> create(ports::MainQueue& mainQueue, GeneralModel& general);

  /// Publishes, later, from the main queue. Any thread.
  void update() override;

 private:
  explicit ContentModel(ports::MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  ports::MainQueue& mainQueue_;
};

}  // namespace pallimo::app
