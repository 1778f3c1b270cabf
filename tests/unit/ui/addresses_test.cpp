// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/addresses.h"

#include <gtest/gtest.h>

#include <string>

namespace pallimo::ui {
namespace {

TEST(Addresses, TheSupportsOpensAnEMail) {
  EXPECT_EQ(std::string(kSupportAddress).find("mailto:"), 0u);
}

TEST(Addresses, PagesAreOpenedOverASafeConnection) {
  EXPECT_EQ(std::string(kStoreAddress).find("https://"), 0u);
  EXPECT_EQ(std::string(kSocialAddress).find("https://"), 0u);
}

TEST(Addresses, LeadToThreePlaces) {
  EXPECT_STRNE(kStoreAddress, kSocialAddress);
  EXPECT_STRNE(kSupportAddress, kStoreAddress);
}

}  // namespace
}  // namespace pallimo::ui
