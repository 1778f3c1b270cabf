// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_more_button.h"

namespace pallimo::modules {

std::shared_ptr<ModuleModelMoreButton> ModuleModelMoreButton::create(ports::MainQueue& mainQueue) {
  return std::shared_ptr<ModuleModelMoreButton>(new ModuleModelMoreButton(mainQueue));
}

void ModuleModelMoreButton::notifyChange() {
  mainQueue_.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->publish();
  });
}

}  // namespace pallimo::modules
