// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_url_opener.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QUrl>

namespace pallimo::adapters::qt {

void QtUrlOpener::open(const std::string& url) {
  if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) return;
  QDesktopServices::openUrl(QUrl(QString::fromStdString(url)));
}

}  // namespace pallimo::adapters::qt
