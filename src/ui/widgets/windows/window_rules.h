// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace pallimo::ui::widgets {

/// Holds a system's rules against every window of the application, dialogs among them. Main thread;
/// needs a QApplication; one at a time.
///
/// They are applied each time a window is shown, changes its state or is about to be redrawn, and
/// not once only: the system, or the user through it, may undo them at any time. Menus and tool
/// tips, which nobody can zoom, are passed by.
class WindowRules final : public QObject {
 public:
  using Rules = std::function<void(QWidget& window)>;

  explicit WindowRules(Rules rules);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  const Rules rules_;
};

}  // namespace pallimo::ui::widgets
