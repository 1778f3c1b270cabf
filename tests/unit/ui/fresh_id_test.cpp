// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/fresh_id.h"

#include <gtest/gtest.h>

#include "unit/ui/counting_random.h"

namespace pallimo::ui {
namespace {

TEST(FreshId, IsARandomUuidOfTheNextTwoNumbersInTurn) {
  CountingRandom random;
  EXPECT_EQ(freshId(random), "00000000-0000-4001-8000-000000000002");
  EXPECT_EQ(freshId(random), "00000000-0000-4003-8000-000000000004");
}

}  // namespace
}  // namespace pallimo::ui
