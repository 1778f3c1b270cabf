// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QString>
#include <functional>
#include <string>

#include "ui/settings_content.h"

class QFileDialog;
class QWidget;

namespace pallimo::ui::widgets {

/// Lets the user choose a folder, beginning in `folder`; returns when they have answered.
using FolderChooser = std::function<ChooserResult(QWidget& parent, const std::string& folder)>;

/// The system's dialog for it. Main thread.
ChooserResult chooseFolder(QWidget& parent, const std::string& folder);

/// What chooseFolder asks of the dialog: folders alone, beginning in `folder`, a button "Select",
/// no zoom.
void prepareFolderDialog(QFileDialog& dialog, const std::string& folder);

/// "Select" in the user's language.
QString selectFolderText();

/// Whether there is a folder of that path.
bool isExistingFolder(const std::string& path);

}  // namespace pallimo::ui::widgets
