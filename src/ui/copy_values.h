// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <span>
#include <string>

#include "ui/panel.h"

namespace pallimo::ui {

/// The panels' current values as text for the clipboard: a line for each figure that is shown, in
/// the order of the window, with a tab between panel, label, value and unit. A spreadsheet makes
/// four columns of it. Pure, any thread.
std::string copyValuesText(std::span<const Panel> panels);

}  // namespace pallimo::ui
