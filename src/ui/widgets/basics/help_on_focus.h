// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace pallimo::ui::widgets {

/// Shows a widget's tool tip to the keyboard too, which never rests on anything: when Tab brings it
/// to `control`, the tip of `helped` opens there, until the next key or until the keyboard leaves.
/// A child of `control`; `helped` lives as long. Main thread.
class HelpOnFocus final : public QObject {
 public:
  /// Asked before the tip is shown. Without it there is always something to tell.
  using IsNeeded = std::function<bool()>;

  HelpOnFocus(QWidget& control, QWidget& helped, IsNeeded isNeeded = nullptr);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void show() const;

  QWidget& helped_;
  const IsNeeded isNeeded_;
};

}  // namespace pallimo::ui::widgets
