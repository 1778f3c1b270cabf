// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/window/system_chrome.h"

namespace pallimo::app {

ui::widgets::WindowChrome systemChrome() { return ui::widgets::framelessChrome(); }

}  // namespace pallimo::app
