// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_widget.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/graph_geometry.h"
#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/fonts.h"
#include "ui/widgets/basics/spoken.h"
#include "ui/widgets/basics/whole_pixels.h"
#include "ui/widgets/panels/graph_movement.h"
#include "ui/widgets/panels/graph_overlay.h"
#include "ui/widgets/panels/graph_painting.h"

namespace pallimo::ui::widgets {
namespace {

constexpr double kLabelHeight = 10;
constexpr int kAgeingMs = 1000;

// "CPU 3.10, GPU 0.52, 12 s ago".
QString spokenReadout(const Readout& readout) {
  QStringList parts;
  for (const ReadoutEntry& entry : readout.entries) {
    parts.append(QString::fromStdString(entry.label + " " + entry.value));
  }
  if (!readout.age.empty()) {
    parts.append(QString::fromStdString(readout.age));
  }
  return parts.join(QStringLiteral(", "));
}

}  // namespace

GraphWidget::GraphWidget(QWidget* parent)
    : QWidget(parent), graph_{{""}, {}}, overlay_(new GraphOverlay(this)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::TabFocus);
}

void GraphWidget::setGraph(const GraphView& graph) {
  const auto visible = static_cast<std::size_t>(std::max(0, box().width()) + kLineReach + 1);
  const bool sameLabels = graph.axisLabels == graph_.axisLabels;
  const bool sameBox = movement(graph_, graph, visible) == 0;
  graph_ = graph;
  if (!sameLabels) {
    update();
  } else if (!sameBox) {
    update(box());
  }
  if (toldPlace()) {
    showReadout();
  }
}

void GraphWidget::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
  if (toldPlace()) {
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
    // The box has a ground of its own, whose edges are sure to be these where pixels are whole.
    const QRegion bare = hasWholePixels(painter.deviceTransform()) ? QRegion(box()) : QRegion();
    for (const QRect& part : QRegion(rect()) - bare) {
      painter.fillRect(part, toColor(colorsOf(scheme_).panel));
    }
    paintLabels(painter);
  }
  if (box().intersects(event->rect())) {
    paintBox(painter);
  }
}

void GraphWidget::paintBox(QPainter& painter) {
  const QTransform transform = painter.deviceTransform();
  const double ratio = transform.m11();
  if (!hasWholePixels(transform)) {
    ++counts_.whole;
    painter.setClipRect(box(), Qt::IntersectClip);
    painter.translate(box().topLeft());
    paintColumns(painter, graph_, box().size(), scheme_, {0, box().width()});
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
  const QFont font = systemFont(text_size::kFootnote);
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

void GraphWidget::focusInEvent(QFocusEvent* event) {
  // A menu, or another window, gives the keyboard back to where it was.
  if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
    isMeant_ = true;
    keyboardSample_ = 0;
    pointer_.reset();
  }
  showReadout();
}

void GraphWidget::focusOutEvent(QFocusEvent* event) {
  if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
    isMeant_ = false;
  }
  showReadout();
}

void GraphWidget::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      goToSample(keyboardSample_ + 1);
      return;
    case Qt::Key_Right:
      goToSample(keyboardSample_ - 1);
      return;
    case Qt::Key_End:
      goToSample(0);
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

// There is nothing to go to where no sample is.
void GraphWidget::goToSample(int sample) {
  const int width = box().width();
  if (sample >= 0 && readoutSource_ && readoutSource_(width - sample, width)) {
    isMeant_ = true;
    keyboardSample_ = sample;
    pointer_.reset();
    showReadout();
  }
}

void GraphWidget::timerEvent(QTimerEvent*) { showReadout(); }

void GraphWidget::showEvent(QShowEvent*) { showReadout(); }

void GraphWidget::hideEvent(QHideEvent*) { ageing_.stop(); }

std::optional<double> GraphWidget::toldPlace() const {
  if (pointer_ || !hasKeyboard()) {
    return pointer_;
  }
  return box().width() - keyboardSample_;
}

void GraphWidget::showReadout() {
  const auto place = toldPlace();
  const auto readout =
      place && readoutSource_ ? readoutSource_(*place, box().width()) : std::nullopt;
  overlay_->setFocusRing(hasKeyboard());
  if (readout || hasKeyboard()) {
    overlay_->showReadout(readout.value_or(Readout{}), box(), scheme_);
  } else {
    overlay_->hide();
  }
  if (!readout) {
    ageing_.stop();
  } else if (isVisible() && !ageing_.isActive()) {
    ageing_.start(kAgeingMs, this);
  }
  describe(*this, readout ? spokenReadout(*readout) : QString());
}

}  // namespace pallimo::ui::widgets
