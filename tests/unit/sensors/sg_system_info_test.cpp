// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/apple_silicon.h"

#include <gtest/gtest.h>

#include "fakes/fake_system_controls.h"

namespace pallimo::sensors {
namespace {

fakes::FakeSystemControls controls(std::int64_t cpuType) {
  fakes::FakeSystemControls made;
  made.setInteger("hw.cputype", cpuType);
  return made;
}

TEST(AppleSilicon, PassesThe64BitArmType) { EXPECT_TRUE(isAppleSilicon(controls(0x0100000C))); }

TEST(AppleSilicon, PassesThePlainArmType) { EXPECT_TRUE(isAppleSilicon(controls(12))); }

TEST(AppleSilicon, PassesWhateverFlagsStandAboveTheLowByte) {
  EXPECT_TRUE(isAppleSilicon(controls(0x7FFFFF0C)));
  EXPECT_TRUE(isAppleSilicon(controls(-244)));  // 0xFFFFFF0C
}

TEST(AppleSilicon, HasNoOtherNameForArm) {
  EXPECT_EQ(otherProcessorName(controls(0x0100000C)), std::nullopt);
}

TEST(AppleSilicon, RefusesIntel) {
  EXPECT_FALSE(isAppleSilicon(controls(7)));
  EXPECT_FALSE(isAppleSilicon(controls(0x01000007)));
}

TEST(AppleSilicon, NamesIntelX86) {
  EXPECT_EQ(otherProcessorName(controls(7)), "x86");
  EXPECT_EQ(otherProcessorName(controls(0x01000007)), "x86");
}

TEST(AppleSilicon, RefusesEveryOtherTypeAsUnknown) {
  for (const std::int64_t type : {0, 1, 11, 13, 18, 0x0C00, 0x0100000D, 255}) {
    EXPECT_FALSE(isAppleSilicon(controls(type))) << type;
    EXPECT_EQ(otherProcessorName(controls(type)), "unknown") << type;
  }
}

TEST(AppleSilicon, RefusesAMachineWhoseTypeCannotBeRead) {
  EXPECT_FALSE(isAppleSilicon(fakes::FakeSystemControls()));
  EXPECT_EQ(otherProcessorName(fakes::FakeSystemControls()), "error in CPU type");
}

TEST(AppleSilicon, RefusesMinusOneAsAnError) {
  EXPECT_FALSE(isAppleSilicon(controls(-1)));
  EXPECT_EQ(otherProcessorName(controls(-1)), "error in CPU type");
}

TEST(AppleSilicon, TakesMinusOneWithoutItsSignAsAnErrorToo) {
  EXPECT_EQ(otherProcessorName(controls(0xFFFFFFFF)), "error in CPU type");
}

TEST(AppleSilicon, ReadsNoOtherVariable) {
  fakes::FakeSystemControls others;
  others.setInteger("hw.cpusubtype", 12);
  others.setText("hw.cputype", "12");
  EXPECT_FALSE(isAppleSilicon(others));
}

}  // namespace
}  // namespace pallimo::sensors
