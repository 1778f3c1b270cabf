// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/no_software_updater.h"

#include <gtest/gtest.h>

namespace pallimo::adapters::linux {
namespace {

TEST(NoSoftwareUpdater, NeverStartsAndSaysWhy) {
  NoSoftwareUpdater updater;
  EXPECT_EQ(updater.start(), "updates are only available in the macOS app");
  updater.checkForUpdates();
  EXPECT_EQ(updater.start(), "updates are only available in the macOS app");
}

}  // namespace
}  // namespace pallimo::adapters::linux
