// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/main_title_widget.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/fonts.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kTitleWidth = 324;
constexpr int kHeight = 46;
constexpr double kBaselines[] = {20, 40};
constexpr double kGap = 6;
constexpr double kSmallestScale = 0.5;
constexpr double kScaleStep = 0.05;

QFont fontOf(FontRole role, double scale) {
  switch (role) {
    case FontRole::title2Bold:
      return systemFont(text_size::kTitle2 * scale, QFont::Bold);
    case FontRole::title3Bold:
      return systemFont(text_size::kTitle3 * scale, QFont::Bold);
    case FontRole::title3Medium:
      return systemFont(text_size::kTitle3 * scale, QFont::Medium);
    case FontRole::headlineMedium:
      break;
  }
  return systemFont(text_size::kHeadline * scale, QFont::Medium);
}

double widthOf(const TitleText& text, double scale) {
  return QFontMetricsF(fontOf(text.font, scale))
      .horizontalAdvance(QString::fromStdString(text.text));
}

double scaleToFit(const MainTitleLine& line, double room) {
  double scale = 1;
  while (scale > kSmallestScale &&
         widthOf(line.name, scale) + kGap + widthOf(line.cores, scale) > room) {
    scale -= kScaleStep;
  }
  return scale;
}

}  // namespace

MainTitleWidget::MainTitleWidget(MainTitleContent content, QWidget* parent) : QLabel(parent) {
  setContent(content);
}

void MainTitleWidget::setContent(const MainTitleContent& content) {
  content_ = content;
  std::string spoken;
  for (const MainTitleLine& line : content_) {
    spoken += (spoken.empty() ? "" : ", ") + line.name.text + " " + line.cores.text;
  }
  setAccessibleName(QString::fromStdString(spoken));
  update();
}

void MainTitleWidget::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
}

QSize MainTitleWidget::sizeHint() const { return {kTitleWidth, kHeight}; }

void MainTitleWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  for (std::size_t i = 0; i < content_.size(); ++i) {
    paintLine(painter, content_[i], kBaselines[i]);
  }
}

void MainTitleWidget::paintLine(QPainter& painter, const MainTitleLine& line,
                                double baseline) const {
  const Palette& colors = colorsOf(scheme_);
  const double scale = scaleToFit(line, width());
  painter.setFont(fontOf(line.name.font, scale));
  painter.setPen(toColor(colors.text));
  painter.drawText(QPointF(0, baseline), QString::fromStdString(line.name.text));
  painter.setFont(fontOf(line.cores.font, scale));
  painter.setPen(toColor(colors.secondaryText));
  painter.drawText(QPointF(widthOf(line.name, scale) + kGap, baseline),
                   QString::fromStdString(line.cores.text));
}

}  // namespace pallimo::ui::widgets
