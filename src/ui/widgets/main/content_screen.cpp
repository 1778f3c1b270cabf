// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/content_screen.h"

#include <QLabel>
#include <QPalette>
#include <utility>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/focus_ring.h"
#include "ui/widgets/basics/fonts.h"
#include "ui/widgets/basics/push_button.h"
#include "ui/widgets/basics/text.h"
#include "ui/widgets/main/message_text.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kWidth = 380;
constexpr double kHeadingSize = 22;
constexpr int kHeadingTop = 16;
constexpr int kHeadingHeight = 30;
// The texts begin with an empty line, which may lie beside the heading's lower edge.
constexpr int kTextTop = 10;
constexpr int kTextTopBelowHeading = 36;
constexpr int kBottom = 26;
// Around a text that stands alone.
constexpr int kAlone = 62;

}  // namespace

ContentScreen::ContentScreen(std::function<void()> press, QWidget* parent)
    : DragArea(parent),
      size_(kWidth, 0),
      heading_(new QLabel(this)),
      text_(new MessageText(this)),
      button_(new PushButton(ButtonLook::accent, this)) {
  heading_->setFont(systemFont(kHeadingSize, QFont::Bold));
  heading_->setAlignment(Qt::AlignCenter);
  connect(button_, &QAbstractButton::clicked, this, std::move(press));
  layOut();
}

void ContentScreen::setTexts(const Texts& texts) {
  if (texts == texts_) {
    return;
  }
  texts_ = texts;
  heading_->setText(toText(texts.heading));
  text_->setMessage(toText(texts.text));
  button_->setText(toText(texts.button));
  layOut();
}

void ContentScreen::setColorScheme(ColorScheme scheme) {
  const Palette& colors = colorsOf(scheme);
  QPalette heading = heading_->palette();
  heading.setColor(QPalette::WindowText, toColor(colors.text));
  heading_->setPalette(heading);
  text_->setColor(colors.secondaryText);
  button_->setColorScheme(scheme);
}

void ContentScreen::layOut() {
  heading_->setVisible(!texts_.heading.empty());
  button_->setVisible(!texts_.button.empty());
  heading_->setGeometry(0, kHeadingTop, kWidth, kHeadingHeight);
  const int top = texts_.isAlone           ? kAlone
                  : texts_.heading.empty() ? kTextTop
                                           : kTextTopBelowHeading;
  text_->move((kWidth - MessageText::kWidth) / 2, top);
  int y = top + text_->height();
  if (!texts_.button.empty()) {
    const QSize button = button_->sizeHint();
    button_->setGeometry(QRect(QPoint((kWidth - button.width()) / 2, y - kFocusRing), button));
    y += button.height() - 2 * kFocusRing;
  }
  size_.setHeight(y + (texts_.isAlone ? kAlone : kBottom));
  updateGeometry();
}

}  // namespace pallimo::ui::widgets
