// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/live_content.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeySequence>
#include <QMenu>
#include <utility>

#include "ui/copy_values.h"
#include "ui/widgets/basics/menu_building.h"

namespace pallimo::ui::widgets {

LiveContent::LiveContent(PanelWidget::ReadoutSource readout, CopyText copyText, QWidget* parent)
    : QWidget(parent),
      readout_(std::move(readout)),
      copyText_(std::move(copyText)),
      copyValues_(new QAction(QStringLiteral("Copy Values"), this)) {
  copyValues_->setShortcut(QKeySequence::Copy);
  addAction(copyValues_);
  connect(copyValues_, &QAction::triggered, this, &LiveContent::copy);
}

void LiveContent::setPanels(std::vector<Panel> panels) {
  const QSize before = sizeHint();
  if (panels.size() != panels_.size()) {
    buildPanels(panels.size());
  }
  for (std::size_t i = 0; i < panels.size(); ++i) {
    panels_[i]->setPanel(std::move(panels[i]));
  }
  if (sizeHint() != before) {
    layOut();
    updateGeometry();
  }
}

void LiveContent::buildPanels(std::size_t count) {
  for (PanelWidget* old : panels_) delete old;
  panels_.clear();
  for (std::size_t i = 0; i < count; ++i) {
    panels_.push_back(new PanelWidget(Panel{{}, {}, {{""}, {}}, 0, {}}, readout_, this));
    panels_.back()->setColorScheme(scheme_);
    panels_.back()->setVisible(true);
  }
}

void LiveContent::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  for (PanelWidget* panel : panels_) panel->setColorScheme(scheme);
}

QSize LiveContent::sizeHint() const {
  int height = kEdge;
  for (const PanelWidget* panel : panels_) {
    height += panel->sizeHint().height() + (panel == panels_.back() ? 0 : kGap);
  }
  return {PanelWidget::kWidth + 2 * kEdge, height};
}

void LiveContent::layOut() {
  int y = 0;
  for (PanelWidget* panel : panels_) {
    panel->setGeometry(QRect(QPoint(kEdge, y), panel->sizeHint()));
    y += panel->height() + kGap;
  }
}

void LiveContent::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  styleMenu(*menu, scheme_);
  menu->addAction(copyValues_);
  menu->popup(event->globalPos());
}

void LiveContent::copy() {
  std::vector<Panel> shown;
  for (const PanelWidget* panel : panels_) shown.push_back(panel->panel());
  copyText_(copyValuesText(shown));
}

}  // namespace pallimo::ui::widgets
