// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/no_software_updater.h"

#include <gtest/gtest.h>

namespace pallimo::adapters::common {
namespace {

TEST(NoSoftwareUpdater, NeverStartsAndSaysWhy) {
  NoSoftwareUpdater updater("there is none");
  EXPECT_EQ(updater.start(), "there is none");
  updater.checkForUpdates();
  EXPECT_EQ(updater.start(), "there is none");
}

}  // namespace
}  // namespace pallimo::adapters::common
