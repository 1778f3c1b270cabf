// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/message_text.h"

#include <QPainter>
#include <QTextLayout>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/fonts.h"

namespace pallimo::ui::widgets {
namespace {

QFont textFont() { return systemFont(text_size::kBody); }

void appendBroken(const QString& paragraph, QStringList& lines) {
  QTextLayout layout(paragraph, textFont());
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(MessageText::kWidth);
    lines.append(paragraph.mid(line.textStart(), line.textLength()).trimmed());
  }
  layout.endLayout();
}

}  // namespace

MessageText::MessageText(QWidget* parent) : QLabel(parent) {}

void MessageText::setMessage(const QString& message) {
  setText(message);
  setAccessibleName(message.simplified());
  lines_.clear();
  for (const QString& paragraph : message.split('\n')) {
    appendBroken(paragraph, lines_);
  }
  setFixedSize(kWidth, static_cast<int>(lines_.size()) * kLineHeight);
  update();
}

void MessageText::setColor(const Rgba& color) {
  color_ = color;
  update();
}

void MessageText::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(textFont());
  painter.setPen(toColor(color_));
  QRect row(0, 0, width(), kLineHeight);
  for (const QString& line : lines_) {
    painter.drawText(row, Qt::AlignCenter, line);
    row.translate(0, kLineHeight);
  }
}

}  // namespace pallimo::ui::widgets
