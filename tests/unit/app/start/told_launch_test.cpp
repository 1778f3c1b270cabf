// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/start/told_launch.h"

#include <gtest/gtest.h>

namespace pallimo::app {
namespace {

constexpr const char* kServer = "https://analytics.example/";

Options withWindow() { return {}; }

Options headless() {
  Options options;
  options.headless = true;
  return options;
}

TEST(ToldLaunch, IsOneWithAWindow) { EXPECT_TRUE(isToldLaunch(withWindow(), kServer, nullptr)); }

TEST(ToldLaunch, IsNoHeadlessRun) { EXPECT_FALSE(isToldLaunch(headless(), kServer, nullptr)); }

TEST(ToldLaunch, IsNoDiagnosis) {
  Options options;
  options.action = Options::Action::diagnose;
  EXPECT_FALSE(isToldLaunch(options, kServer, nullptr));
}

TEST(ToldLaunch, IsNoneOfAUserWhoSaidNo) { EXPECT_FALSE(isToldLaunch(withWindow(), kServer, "1")); }

TEST(ToldLaunch, IsNoneWithoutAServer) { EXPECT_FALSE(isToldLaunch(withWindow(), "", nullptr)); }

TEST(ToldLaunch, IsNoneWhereNobodyChoseAServer) {
  EXPECT_FALSE(isToldLaunch(withWindow(), "https://analytics.pallimo.invalid/", nullptr));
}

}  // namespace
}  // namespace pallimo::app
