// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/built_bundle.h"

#include <gtest/gtest.h>

namespace pallimo::adapters::linux {
namespace {

TEST(BuiltBundle, TheHelperBesideTheAppHasTheAppsVersion) {
  EXPECT_EQ(BuiltBundle("/bin/sh", "1.2.3").embeddedHelperVersion(), "1.2.3");
}

TEST(BuiltBundle, WithoutAHelperThereIsNoVersion) {
  EXPECT_EQ(BuiltBundle("/nowhere/helper", "1.2.3").embeddedHelperVersion(), std::nullopt);
}

}  // namespace
}  // namespace pallimo::adapters::linux
