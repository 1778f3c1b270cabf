// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ui/widgets/window_chrome.h"

namespace pallimo::app {

/// How windows look and what they may do on this operating system. Each system has its own
/// definition, in a folder of its own; the build picks one. Main thread.
ui::widgets::WindowChrome systemChrome();

}  // namespace pallimo::app
