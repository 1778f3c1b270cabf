// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "app/models/content_view.h"
#include "app/models/general_model.h"
#include "ports/random_numbers.h"
#include "ports/user_defaults.h"
#include "ui/main_window_content.h"

namespace pallimo::app {

/// What the main window shows at this moment: the main content in words, the machine's title, and,
/// while it is live, the four panels from one snapshot of each model. Main thread.
ui::MainWindowContent windowContent(const ContentView& view, const GeneralModel& general,
                                    const ports::UserDefaults& defaults,
                                    ports::RandomNumbers& random);

}  // namespace pallimo::app
