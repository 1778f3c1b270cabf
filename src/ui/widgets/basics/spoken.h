// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QString>
#include <QWidget>

namespace pallimo::ui::widgets {

// What a widget says to whoever reads the screen aloud. Qt tells the reader of it each time it is
// set, also when it is what it was: these set it when it differs. Main thread.

inline void nameAloud(QWidget& widget, const QString& name) {
  if (widget.accessibleName() != name) widget.setAccessibleName(name);
}

inline void describe(QWidget& widget, const QString& description) {
  if (widget.accessibleDescription() != description) widget.setAccessibleDescription(description);
}

}  // namespace pallimo::ui::widgets
