// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace pallimo::ui::widgets {

/// Collects what Qt complains of while it lives; nothing of it may be left in the end. What the
/// screen without a screen cannot do is no complaint.
class QtMessages {
 public:
  QtMessages() : earlier_(qInstallMessageHandler(&QtMessages::take)) { unexpected().clear(); }
  ~QtMessages() { qInstallMessageHandler(earlier_); }
  QtMessages(const QtMessages&) = delete;
  QtMessages& operator=(const QtMessages&) = delete;

  static QStringList& unexpected() {
    static QStringList messages;
    return messages;
  }

 private:
  static bool isExpected(const QString& message) {
    for (const char* part : {"propagateSizeHints", "raise()", "grabbing", "XDG_RUNTIME_DIR"}) {
      if (message.contains(QLatin1String(part))) return true;
    }
    return false;
  }

  static void take(QtMsgType, const QMessageLogContext&, const QString& message) {
    if (!isExpected(message)) unexpected().append(message);
  }

  const QtMessageHandler earlier_;
};

}  // namespace pallimo::ui::widgets
