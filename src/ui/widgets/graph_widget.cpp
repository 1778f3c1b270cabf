// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/graph_widget.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/graph_geometry.h"
#include "ui/widgets/colors.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/graph_overlay.h"
#include "ui/widgets/graph_painting.h"

namespace pallimo::ui::widgets {
namespace {

constexpr double kLabelHeight = 10;
constexpr double kWidestLabel = 24;
constexpr double kSmallestLabel = 6;

double widestOf(const std::vector<std::string>& labels, const QFont& font) {
  const QFontMetricsF metrics(font);
  double widest = 0;
  for (const std::string& label : labels) {
    widest = std::max(widest, metrics.horizontalAdvance(QString::fromStdString(label)));
  }
  return widest;
}

// Smaller than the system's footnote where a label of four digits would not have its place.
QFont labelFont(const std::vector<std::string>& labels) {
  double size = text_size::kFootnote;
  while (size > kSmallestLabel && widestOf(labels, systemFont(size)) > kWidestLabel) --size;
  return systemFont(size);
}

// Whole pixels at whole places can be kept and moved; others have to be painted where they stand.
bool isWhole(const QTransform& transform) {
  return transform.type() <= QTransform::TxScale && transform.m11() >= 1 &&
         transform.m11() == transform.m22() && transform.m11() == std::floor(transform.m11()) &&
         transform.dx() == std::floor(transform.dx()) &&
         transform.dy() == std::floor(transform.dy());
}

}  // namespace

GraphWidget::GraphWidget(QWidget* parent)
    : QWidget(parent), graph_{{""}, {}}, overlay_(new GraphOverlay(this)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
}

void GraphWidget::setGraph(const GraphView& graph) {
  const bool sameLabels = graph.axisLabels == graph_.axisLabels;
  graph_ = graph;
  update(sameLabels ? box() : rect());
  if (pointer_) {
    showReadout();
  }
}

void GraphWidget::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
  if (pointer_) {
    showReadout();
  }
}

void GraphWidget::setReadoutSource(ReadoutSource source) { readoutSource_ = std::move(source); }

QRect GraphWidget::box() const {
  return rect().adjusted(0, kLabelMargin, -kLabelRoom, -kLabelMargin);
}

void GraphWidget::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (box().isEmpty()) {
    painter.fillRect(rect(), toColor(colorsOf(scheme_).panel));
    return;
  }
  if (!box().contains(event->rect())) {
    painter.fillRect(rect(), toColor(colorsOf(scheme_).panel));
    paintLabels(painter);
  }
  if (box().intersects(event->rect())) {
    paintBox(painter);
  }
}

void GraphWidget::paintBox(QPainter& painter) {
  const QTransform transform = painter.deviceTransform();
  const double ratio = transform.m11();
  if (!isWhole(transform)) {
    ++counts_.whole;
    painter.setClipRect(box(), Qt::IntersectClip);
    painter.translate(box().topLeft());
    paintColumns(painter, graph_, box().size(), ratio, scheme_, {0, box().width()});
    return;
  }
  const auto painted = canvas_.draw(graph_, box().size(), static_cast<int>(ratio), scheme_);
  counts_.moved += painted == GraphCanvas::Painted::newColumns ? 1 : 0;
  counts_.whole += painted == GraphCanvas::Painted::everything ? 1 : 0;
  // Pixel by pixel: an image that says how dense it is would be stretched.
  painter.scale(1 / ratio, 1 / ratio);
  painter.drawImage(box().topLeft() * ratio, canvas_.image());
}

void GraphWidget::paintLabels(QPainter& painter) const {
  const QFont font = labelFont(graph_.axisLabels);
  const QFontMetricsF metrics(font);
  painter.setFont(font);
  painter.setPen(toColor(colorsOf(scheme_).secondaryText));
  for (const std::string& label : graph_.axisLabels) {
    const Point origin = labelOrigin(labelPosition(graph_.axisLabels, label),
                                     graph_.axisLabels.size(), box().height());
    const double baseline = (kLabelHeight + metrics.capHeight()) / 2;
    painter.drawText(QPointF(box().x() + box().width() + origin.x, box().y() + origin.y + baseline),
                     QString::fromStdString(label));
  }
}

void GraphWidget::enterEvent(QEnterEvent* event) { pointAt(event->position()); }

void GraphWidget::mouseMoveEvent(QMouseEvent* event) { pointAt(event->position()); }

void GraphWidget::pointAt(QPointF position) {
  const bool inside = QRectF(box()).contains(position);
  pointer_ = inside ? std::optional(position.x() - box().x()) : std::nullopt;
  showReadout();
}

void GraphWidget::leaveEvent(QEvent*) {
  pointer_.reset();
  showReadout();
}

void GraphWidget::resizeEvent(QResizeEvent*) {
  pointer_.reset();
  showReadout();
}

void GraphWidget::showReadout() {
  const auto readout =
      pointer_ && readoutSource_ ? readoutSource_(*pointer_, box().width()) : std::nullopt;
  if (readout) {
    overlay_->showReadout(*readout, box(), scheme_);
  } else {
    overlay_->hide();
  }
}

}  // namespace pallimo::ui::widgets
