// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/fatal.h"

#include <gtest/gtest.h>

#include <csignal>

namespace pallimo::base {
namespace {

TEST(FatalDeathTest, PrintsItsOneLineAndAborts) {
  EXPECT_EXIT(fatal("Nothing can be done."), ::testing::KilledBySignal(SIGABRT),
              "^Nothing can be done\\.\n$");
}

}  // namespace
}  // namespace pallimo::base
