// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/models/content_model.h"

namespace pallimo::app {

std::shared_ptr<ContentModel> ContentModel::create(ports::MainQueue& mainQueue,
                                                   GeneralModel& general) {
  std::shared_ptr<ContentModel> model(new ContentModel(mainQueue));
  general.xpcmanager()->checkHelperAtStart(model);
  return model;
}

void ContentModel::update() {
  mainQueue_.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->publish();
  });
}

}  // namespace pallimo::app
