// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/folder_row.h"

#include <QAbstractFileIconProvider>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <utility>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/fonts.h"
#include "ui/widgets/basics/spoken.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kGap = 6;
constexpr int kPathLeft = FolderRow::kIconSize + kGap;
constexpr double kCorner = 1.5;

QFont pathFont() { return systemFont(text_size::kBody); }

}  // namespace

QIcon desktopFolderIcon(const QString& path) {
  const QFileInfo folder(path);
  const QAbstractFileIconProvider icons;
  return folder.isDir() ? icons.icon(folder) : icons.icon(QAbstractFileIconProvider::Folder);
}

FolderRow::FolderRow(Icons icons, QWidget* parent) : QLabel(parent), icons_(std::move(icons)) {}

void FolderRow::setFolder(const QString& path) {
  path_ = path;
  icon_ = icons_(path);
  // Never read as formatted text, whatever a folder is called.
  setToolTip(QStringLiteral("<span>") + path.toHtmlEscaped() + QStringLiteral("</span>"));
  nameAloud(*this, path);
  update();
}

void FolderRow::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
}

QString FolderRow::shownPath() const {
  return QFontMetricsF(pathFont()).elidedText(path_, Qt::ElideMiddle, width() - kPathLeft);
}

void FolderRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (icon_.isNull()) {
    paintFolder(painter);
  } else {
    icon_.paint(&painter, 0, (height() - kIconSize) / 2, kIconSize, kIconSize);
  }
  painter.setFont(pathFont());
  painter.setPen(toColor(colorsOf(scheme_).secondaryText));
  painter.drawText(QRect(kPathLeft, 0, width() - kPathLeft, height()),
                   Qt::AlignVCenter | Qt::TextSingleLine, shownPath());
}

void FolderRow::paintFolder(QPainter& painter) const {
  const double top = (height() - kIconSize) / 2.0 + 2;
  QPainterPath folder;
  folder.setFillRule(Qt::WindingFill);
  folder.addRoundedRect(QRectF(0, top, 7, 6), kCorner, kCorner);
  folder.addRoundedRect(QRectF(0, top + 1.5, kIconSize, 11), kCorner, kCorner);
  painter.fillPath(folder, toColor(colorsOf(scheme_).folder));
}

}  // namespace pallimo::ui::widgets
