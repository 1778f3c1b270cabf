// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_url_opener.h"

#include <gtest/gtest.h>

#include "unit/adapters/qt/complaints.h"

namespace pallimo::adapters::qt {
namespace {

TEST(QtUrlOpener, IsQuietInARunWithoutAWindow) {
  const Complaints complaints;
  QtUrlOpener().open("https://store.pallimo.invalid/");
  EXPECT_EQ(complaints.count(), 0u);
}

}  // namespace
}  // namespace pallimo::adapters::qt
