// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/faults/faulty_helper_installer.h"

#include <gtest/gtest.h>

#include "fakes/fake_helper_installer.h"

namespace pallimo::adapters::simulated {
namespace {

using Calls = std::vector<std::string>;

class Token final : public ports::AuthorizationToken {};

TEST(FaultyHelperInstaller, WithoutAFaultTheSystemBlesses) {
  const Token token;
  fakes::FakeHelperInstaller system;
  FaultyHelperInstaller installer(system, {});
  EXPECT_TRUE(installer.bless("a.label", token));
  EXPECT_EQ(system.calls, Calls{"bless a.label"});
  EXPECT_EQ(system.blessedWith, &token);
}

TEST(FaultyHelperInstaller, TheSystemsOwnRefusalPassesThrough) {
  fakes::FakeHelperInstaller system;
  system.blesses = false;
  FaultyHelperInstaller installer(system, {});
  EXPECT_FALSE(installer.bless("a.label", Token()));
}

TEST(FaultyHelperInstaller, APlannedRefusalTouchesNothing) {
  fakes::FakeHelperInstaller system;
  FaultyHelperInstaller installer(system, {.blessRefused = true});
  EXPECT_FALSE(installer.bless("a.label", Token()));
  EXPECT_EQ(system.calls, Calls());
}

}  // namespace
}  // namespace pallimo::adapters::simulated
