// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QApplication>

namespace pallimo::ui::widgets {

/// The one application object of the test program, made when the first test needs it: listing the
/// tests must not need a screen.
inline QApplication& testApplication() {
  static int argc = 1;
  static char name[] = "unit_widgets";
  static char* argv[] = {name, nullptr};
  // Never destroyed: widgets in static storage may outlive every other order.
  static auto* application = new QApplication(argc, argv);
  return *application;
}

}  // namespace pallimo::ui::widgets
