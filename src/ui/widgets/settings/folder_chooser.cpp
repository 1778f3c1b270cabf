// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/folder_chooser.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace pallimo::ui::widgets {

QString selectFolderText() { return QCoreApplication::translate("FolderChooser", kSelectFolder); }

void prepareFolderDialog(QFileDialog& dialog, const std::string& folder) {
  // A dialog of Qt's own has the system's frame, with all but a button that zooms.
  dialog.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                        Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  dialog.setDirectory(QString::fromStdString(folder));
  dialog.setLabelText(QFileDialog::Accept, selectFolderText());
}

ChooserResult chooseFolder(QWidget& parent, const std::string& folder) {
  QFileDialog dialog(&parent);
  prepareFolderDialog(dialog, folder);
  if (dialog.exec() != QDialog::Accepted) {
    return {};
  }
  const QString chosen = dialog.selectedFiles().value(0);
  return {ChooserResult::Answer::confirmed,
          chosen.isEmpty() ? std::string() : QDir(chosen).absolutePath().toStdString()};
}

bool isExistingFolder(const std::string& path) {
  return QFileInfo(QString::fromStdString(path)).isDir();
}

}  // namespace pallimo::ui::widgets
