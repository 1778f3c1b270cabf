// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_url_opener.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include "unit/adapters/qt/event_loop.h"

namespace pallimo::adapters::qt {
namespace {

TEST(QtUrlOpener, OpensNothingInARunWithoutAWindow) {
  if (QCoreApplication::instance() == nullptr) {
    int one = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(one, arguments);
    QtUrlOpener().open("https://store.pallimo.invalid/");  // Qt would stop the program
    SUCCEED();
  }
}

}  // namespace
}  // namespace pallimo::adapters::qt
