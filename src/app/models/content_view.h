// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <optional>

#include "app/models/content_model.h"
#include "app/models/general_model.h"
#include "ports/main_queue.h"
#include "ui/main_content.h"

namespace pallimo::app {

/// The main content without its pixels: what it shows and what its button does, with or without a
/// window. Main thread.
///
/// Whoever draws it does so anew when the content model publishes, and after a press.
class ContentView {
 public:
  /// Creates the content model, which asks the helper whether it answers. Queue and models
  /// outlive the view.
  ContentView(ports::MainQueue& mainQueue, GeneralModel& general);

  const std::shared_ptr<ContentModel>& contentModel() const { return contentModel_; }
  /// Whether the update was asked for. It stays so for the view's life, even when it fails.
  bool hideUpdateButton() const { return hideUpdateButton_; }

  /// Looked up in the helper manager's flags at every call.
  ui::MainContent content() const;

  /// Presses the button that is shown: installs the helper (and asks the administrator meanwhile),
  /// or hides the button and updates the helper. Returns the screen whose button it was; nothing
  /// when no button is shown.
  std::optional<ui::MainContent> press();

 private:
  GeneralModel& general_;
  const std::shared_ptr<ContentModel> contentModel_;
  bool hideUpdateButton_ = false;
};

}  // namespace pallimo::app
