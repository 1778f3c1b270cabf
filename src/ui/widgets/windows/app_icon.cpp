// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/windows/app_icon.h"

#include <QPixmap>
#include <QString>

// The linker drops what nobody in a static library asks for. In no namespace: the macro declares
// the resource's own function where it stands.
static void initResource() { Q_INIT_RESOURCE(icon); }

namespace pallimo::ui::widgets {

QIcon appIcon() {
  initResource();
  QIcon icon;
  for (const int size : kAppIconSizes) {
    // The format is named so that Qt asks no plugin for it.
    icon.addPixmap(QPixmap(QStringLiteral(":/pallimo/icon/%1.png").arg(size), "PNG"));
  }
  return icon;
}

}  // namespace pallimo::ui::widgets
