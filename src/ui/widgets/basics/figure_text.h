// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QPointF>
#include <QRawFont>
#include <QString>

class QPainter;

namespace pallimo::ui::widgets {

/// Texts of figures in one font, in which every digit is as wide as the widest one: digits that
/// change do not make their neighbours dance, in whatever font the system has. Main thread.
class FigureText {
 public:
  explicit FigureText(const QFont& font);

  /// Points from the text's beginning to its end.
  double width(const QString& text) const;

  /// `position` is where the text's base line begins.
  void draw(QPainter& painter, QPointF position, const QColor& color, const QString& text) const;

 private:
  struct Glyph {
    quint32 index = 0;
    double advance = 0;
  };

  QList<Glyph> glyphsOf(const QString& text) const;
  QList<Glyph> measured(const QList<quint32>& indexes) const;
  /// How wide the glyph's place is.
  double cellOf(const Glyph& glyph) const;

  QRawFont raw_;
  QList<Glyph> usual_;  ///< of the characters that figures are written with
  double digitWidth_ = 0;
};

}  // namespace pallimo::ui::widgets
