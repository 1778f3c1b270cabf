// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/figure_text.h"

#include <QGlyphRun>
#include <QPainter>
#include <algorithm>

namespace pallimo::ui::widgets {

FigureText::FigureText(const QFont& font)
    : raw_(QRawFont::fromFont(font)),
      digits_(raw_.glyphIndexesForString(QStringLiteral("0123456789"))) {
  for (const quint32 digit : digits_) {
    digitWidth_ = std::max(digitWidth_, advance(digit));
  }
}

double FigureText::width(const QString& text) const {
  double sum = 0;
  for (const quint32 glyph : raw_.glyphIndexesForString(text)) {
    sum += isDigit(glyph) ? digitWidth_ : advance(glyph);
  }
  return sum;
}

void FigureText::draw(QPainter& painter, QPointF position, const QColor& color,
                      const QString& text) const {
  const QList<quint32> glyphs = raw_.glyphIndexesForString(text);
  QList<QPointF> places;
  double x = 0;
  for (const quint32 glyph : glyphs) {
    const double own = advance(glyph);
    const double cell = isDigit(glyph) ? digitWidth_ : own;
    places.append({x + (cell - own) / 2, 0});
    x += cell;
  }
  QGlyphRun run;
  run.setRawFont(raw_);
  run.setGlyphIndexes(glyphs);
  run.setPositions(places);
  painter.setPen(color);
  painter.drawGlyphRun(position, run);
}

double FigureText::advance(quint32 glyph) const {
  const auto advances = raw_.advancesForGlyphIndexes({glyph}, QRawFont::SeparateAdvances);
  return advances.isEmpty() ? 0 : advances.front().x();
}

}  // namespace pallimo::ui::widgets
