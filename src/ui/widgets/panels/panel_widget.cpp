// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/panel_widget.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/widgets/basics/help_on_focus.h"
#include "ui/widgets/basics/spoken.h"
#include "ui/widgets/panels/graph_widget.h"
#include "ui/widgets/panels/module_title_row.h"
#include "ui/widgets/panels/value_widget.h"

namespace pallimo::ui::widgets {
namespace {

// Points from the frame.
constexpr int kPadding = 13;
constexpr int kTitleTop = 6;
constexpr int kValuesTop = 26;
constexpr int kBoxTop = 53;
constexpr int kBoxBottom = 15;
constexpr int kBoxRight = 31;

bool sameColumns(const std::vector<ValueColumn>& a, const std::vector<ValueColumn>& b) {
  if (a.size() != b.size()) {
    return false;
  }
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i].width != b[i].width || a[i].values.size() != b[i].values.size()) {
      return false;
    }
  }
  return true;
}

ValueStyle styleOf(const ValueColumn& column) {
  return column.values.size() > 1 ? ValueStyle::shared : ValueStyle::alone;
}

double sharedLabelWidth(const ValueColumn& column) {
  double width = 0;
  if (styleOf(column) == ValueStyle::shared) {
    for (const PanelValue& value : column.values) {
      width = std::max(width, ValueWidget::labelWidth(ValueStyle::shared, value));
    }
  }
  return width;
}

QString spokenUnit(const std::string& unit) {
  if (unit == "WATTS") return "watts";
  if (unit == "GHZ") return "gigahertz";
  if (unit == "℃") return "degrees Celsius";
  if (unit == "℉") return "degrees Fahrenheit";
  return unit == "%" ? "percent" : QString::fromStdString(unit);
}

}  // namespace

PanelWidget::PanelWidget(Panel panel, ReadoutSource readout, QWidget* parent)
    : QWidget(parent),
      panel_(std::move(panel)),
      title_(new ModuleTitleRow(this)),
      graph_(new GraphWidget(this)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  resize(sizeHint());
  if (readout) {
    graph_->setReadoutSource([this, source = std::move(readout)](double x, double width) {
      return source(x, width, panel_);
    });
  }
  new HelpOnFocus(*graph_, *title_);
  buildValues();
  showAll();
}

// The graph outlives the panel's own members, and asks once more when it loses the focus.
PanelWidget::~PanelWidget() { graph_->setReadoutSource(nullptr); }

void PanelWidget::setPanel(Panel panel) {
  const bool sameHeight = panel.height == panel_.height;
  const bool same = sameColumns(panel.columns, panel_.columns);
  panel_ = std::move(panel);
  if (!same) {
    buildValues();
  }
  showAll();
  if (!sameHeight) {
    updateGeometry();
  }
}

void PanelWidget::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  title_->setColorScheme(scheme);
  graph_->setColorScheme(scheme);
  for (ValueWidget* value : values_) value->setColorScheme(scheme);
  update();
}

QSize PanelWidget::sizeHint() const {
  return {kWidth, static_cast<int>(std::lround(panel_.height))};
}

void PanelWidget::showAll() {
  nameAloud(*this, QString::fromStdString(panel_.title.labelLeft));
  describe(*this, QString::fromStdString(panel_.title.help));
  nameAloud(*graph_, QString::fromStdString(panel_.title.labelLeft + " graph"));
  title_->setTitle(panel_.title);
  graph_->setGraph(panel_.graph);
  const QString unit = spokenUnit(panel_.title.labelRight);
  auto widget = values_.begin();
  for (const ValueColumn& column : panel_.columns) {
    const double labelRoom = sharedLabelWidth(column);
    for (const PanelValue& value : column.values) {
      (*widget++)->setValue(value, unit, labelRoom);
    }
  }
}

void PanelWidget::buildValues() {
  for (ValueWidget* old : values_) delete old;
  values_.clear();
  for (const ValueColumn& column : panel_.columns) {
    for (std::size_t i = 0; i < column.values.size(); ++i) {
      values_.push_back(new ValueWidget(styleOf(column), column.width, this));
      values_.back()->setColorScheme(scheme_);
      values_.back()->setVisible(true);
    }
  }
  layOut();
}

void PanelWidget::layOut() {
  title_->setGeometry(kPadding, kTitleTop, width() - 2 * kPadding, ModuleTitleRow::kHeight);
  int x = kPadding;
  auto widget = values_.begin();
  for (const ValueColumn& column : panel_.columns) {
    int y = kValuesTop;
    for (std::size_t i = 0; i < column.values.size(); ++i, ++widget) {
      (*widget)->move(x, y);
      y += (*widget)->height();
    }
    x += static_cast<int>(std::lround(column.width)) + ValueWidget::kGap;
  }
  const QRect box(kPadding, kBoxTop, width() - kPadding - kBoxRight,
                  height() - kBoxTop - kBoxBottom);
  graph_->setGeometry(box.adjusted(0, -GraphWidget::kLabelMargin, GraphWidget::kLabelRoom,
                                   GraphWidget::kLabelMargin));
}

void PanelWidget::resizeEvent(QResizeEvent*) { layOut(); }

void PanelWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  frame_.paint(painter, rect(), scheme_);
}

}  // namespace pallimo::ui::widgets
