// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "base/observable.h"
#include "helper_link/delegates.h"
#include "ports/main_queue.h"

namespace pallimo::modules {

/// Tells the more-button menu to redraw when the helper's state has changed. Holds nothing itself.
class ModuleModelMoreButton final : public base::Observable,
                                    public helper_link::MoreButtonModelDelegate,
                                    public std::enable_shared_from_this<ModuleModelMoreButton> {
 public:
  /// `mainQueue` outlives the model.
  static std::shared_ptr<ModuleModelMoreButton> create(ports::MainQueue& mainQueue);

  /// Publishes once for each call, later, from the main queue; not at all when the model is gone by
  /// then. Any thread.
  void notifyChange() override;

 private:
  explicit ModuleModelMoreButton(ports::MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  ports::MainQueue& mainQueue_;
};

}  // namespace pallimo::modules
