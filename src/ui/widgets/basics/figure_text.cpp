// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/figure_text.h"

#include <QGlyphRun>
#include <QPainter>
#include <algorithm>

namespace pallimo::ui::widgets {
namespace {

// What figures are written with. The font is asked once for their glyphs, the digits' first.
const QString& usualCharacters() {
  static const QString characters = QStringLiteral("0123456789.-naif");
  return characters;
}
constexpr qsizetype kDigits = 10;

}  // namespace

FigureText::FigureText(const QFont& font) : raw_(QRawFont::fromFont(font)) {
  usual_ = measured(raw_.glyphIndexesForString(usualCharacters()));
  for (qsizetype i = 0; i < kDigits && i < usual_.size(); ++i) {
    digitWidth_ = std::max(digitWidth_, usual_[i].advance);
  }
}

double FigureText::width(const QString& text) const {
  double sum = 0;
  for (const Glyph& glyph : glyphsOf(text)) sum += cellOf(glyph);
  return sum;
}

void FigureText::draw(QPainter& painter, QPointF position, const QColor& color,
                      const QString& text) const {
  QList<quint32> indexes;
  QList<QPointF> places;
  indexes.reserve(text.size());
  places.reserve(text.size());
  double x = 0;
  for (const Glyph& glyph : glyphsOf(text)) {
    const double cell = cellOf(glyph);
    indexes.append(glyph.index);
    places.append({x + (cell - glyph.advance) / 2, 0});
    x += cell;
  }
  QGlyphRun run;
  run.setRawFont(raw_);
  run.setGlyphIndexes(indexes);
  run.setPositions(places);
  painter.setPen(color);
  painter.drawGlyphRun(position, run);
}

QList<FigureText::Glyph> FigureText::glyphsOf(const QString& text) const {
  QList<Glyph> glyphs;
  glyphs.reserve(text.size());
  for (const QChar character : text) {
    const qsizetype usual = usualCharacters().indexOf(character);
    if (usual < 0 || usual >= usual_.size()) return measured(raw_.glyphIndexesForString(text));
    glyphs.append(usual_[usual]);
  }
  return glyphs;
}

QList<FigureText::Glyph> FigureText::measured(const QList<quint32>& indexes) const {
  QList<Glyph> glyphs;
  for (const quint32 index : indexes) {
    const auto advances = raw_.advancesForGlyphIndexes({index}, QRawFont::SeparateAdvances);
    glyphs.append({index, advances.isEmpty() ? 0 : advances.front().x()});
  }
  return glyphs;
}

double FigureText::cellOf(const Glyph& glyph) const {
  const auto digitsEnd = usual_.begin() + std::min(kDigits, usual_.size());
  const bool isDigit = std::any_of(usual_.begin(), digitsEnd,
                                   [&](const Glyph& digit) { return digit.index == glyph.index; });
  return isDigit ? digitWidth_ : glyph.advance;
}

}  // namespace pallimo::ui::widgets
