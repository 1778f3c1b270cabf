// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sg_system_info.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "fakes/fake_system_controls.h"

namespace pallimo::sensors {
namespace {

constexpr const char* kCPUType = "hw.cputype";

class SGSystemInfoTest : public ::testing::Test {
 protected:
  std::string stringOf(base::Bytes bytes) {
    controls_.setBytes("test.text", std::move(bytes));
    return info_.sysctlString("test.text");
  }
  std::string stringOf(std::string_view text) {
    return stringOf(base::Bytes(text.begin(), text.end()));
  }
  std::optional<std::int32_t> numberOf(base::Bytes bytes) {
    controls_.setBytes("test.number", std::move(bytes));
    return info_.sysctlInt32("test.number");
  }
  bool isAppleSilicon(std::int32_t cpuType) {
    controls_.setInteger(kCPUType, cpuType);
    return info_.isAppleSilicon();
  }
  std::optional<std::string_view> nameOf(std::int32_t cpuType) {
    controls_.setInteger(kCPUType, cpuType);
    return info_.otherProcessorName();
  }

  fakes::FakeSystemControls controls_;
  const SGSystemInfo info_{controls_};
};

using SysctlString = SGSystemInfoTest;
using SysctlInt32 = SGSystemInfoTest;
using AppleSilicon = SGSystemInfoTest;

TEST_F(SysctlString, IsTheTextWithoutItsNul) {
  EXPECT_EQ(stringOf(std::string_view("Apple M1\0", 9)), "Apple M1");
}

TEST_F(SysctlString, EndsAtTheFirstNul) {
  EXPECT_EQ(stringOf(std::string_view("Mac\0Book\0", 9)), "Mac");
  EXPECT_EQ(stringOf(std::string_view("Mac\0Book", 8)), "Mac");
}

TEST_F(SysctlString, MayHaveNoCharacterBeforeItsNul) {
  EXPECT_EQ(stringOf(std::string_view("\0", 1)), "");
}

TEST_F(SysctlString, KeepsUtf8) {
  EXPECT_EQ(stringOf(std::string_view("M2 \xE2\x84\xA2\0", 7)), "M2 \xE2\x84\xA2");
}

TEST_F(SysctlString, ReplacesWhatIsNoUtf8) {
  EXPECT_EQ(stringOf(std::string_view("M\xFF\x80Z\0", 5)), "M\xEF\xBF\xBD\xEF\xBF\xBDZ");
  EXPECT_EQ(stringOf(std::string_view("M\xE2\x84\0", 4)), "M\xEF\xBF\xBD");
}

TEST_F(SysctlString, ReadsTheModel) {
  controls_.setText("hw.model", "MacBookAir10,1");
  EXPECT_EQ(info_.hardwareModel(), "MacBookAir10,1");
}

TEST_F(SysctlString, ReadsTheBrand) {
  controls_.setText("machdep.cpu.brand_string", "Apple M2 Pro");
  EXPECT_EQ(info_.cpuBrandString(), "Apple M2 Pro");
}

TEST_F(SysctlString, ReadsAnewEachTime) {
  controls_.setText("machdep.cpu.brand_string", "Apple M2");
  EXPECT_EQ(info_.cpuBrandString(), "Apple M2");
  controls_.setText("machdep.cpu.brand_string", "Apple M4");
  EXPECT_EQ(info_.cpuBrandString(), "Apple M4");
}

class SGSystemInfoDeathTest : public SGSystemInfoTest {
 protected:
  SGSystemInfoDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(SGSystemInfoDeathTest, StopsOnATextThatCannotBeRead) {
  EXPECT_DEATH(info_.sysctlString("test.text"), "The kernel variable test\\.text can't be read\\.");
}

TEST_F(SGSystemInfoDeathTest, StopsOnATextOfNoBytes) {
  EXPECT_DEATH(stringOf(base::Bytes()),
               "The kernel variable test\\.text is empty or does not end\\.");
}

TEST_F(SGSystemInfoDeathTest, StopsOnATextWithoutANul) {
  EXPECT_DEATH(stringOf(std::string_view("Apple M1")),
               "The kernel variable test\\.text is empty or does not end\\.");
}

TEST_F(SGSystemInfoDeathTest, NamesTheModel) {
  EXPECT_DEATH(info_.hardwareModel(), "The kernel variable hw\\.model can't be read\\.");
}

TEST_F(SGSystemInfoDeathTest, NamesTheBrand) {
  EXPECT_DEATH(info_.cpuBrandString(),
               "The kernel variable machdep\\.cpu\\.brand_string can't be read\\.");
}

TEST_F(SysctlInt32, IsTheNumber) {
  controls_.setInteger("hw.perflevel0.logicalcpu", 8);
  EXPECT_EQ(info_.sysctlInt32("hw.perflevel0.logicalcpu"), 8);
}

TEST_F(SGSystemInfoTest, ReadsTheCoresOfBothPerformanceLevels) {
  EXPECT_EQ(info_.performanceCores(), std::nullopt);
  EXPECT_EQ(info_.efficiencyCores(), std::nullopt);
  controls_.setInteger("hw.perflevel0.logicalcpu", 8);
  controls_.setInteger("hw.perflevel1.logicalcpu", 2);
  EXPECT_EQ(info_.performanceCores(), 8);
  EXPECT_EQ(info_.efficiencyCores(), 2);
}

TEST_F(SysctlInt32, KeepsTheSign) {
  controls_.setInteger("test.number", std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(info_.sysctlInt32("test.number"), std::numeric_limits<std::int32_t>::min());
}

TEST_F(SysctlInt32, IsNothingWhenItCannotBeRead) {
  EXPECT_EQ(info_.sysctlInt32("test.number"), std::nullopt);
}

TEST_F(SysctlInt32, IsFourBytesInTheHostsOrder) {
  EXPECT_EQ(numberOf({0x0C, 0, 0, 1}), 0x0100000C);
  EXPECT_EQ(numberOf({0xFF, 0xFF, 0xFF, 0xFF}), -1);
}

TEST_F(SysctlInt32, IsNothingForA64BitVariable) {
  EXPECT_EQ(numberOf({8, 0, 0, 0, 0, 0, 0, 0}), std::nullopt);
}

TEST_F(SysctlInt32, IsNothingForAVariableOfAnyOtherSize) {
  EXPECT_EQ(numberOf({}), std::nullopt);
  EXPECT_EQ(numberOf({8}), std::nullopt);
  EXPECT_EQ(numberOf({8, 0, 0}), std::nullopt);
  EXPECT_EQ(numberOf({8, 0, 0, 0, 0}), std::nullopt);
}

TEST_F(SysctlInt32, ReadsAnewEachTime) {
  EXPECT_EQ(numberOf({8, 0, 0, 0}), 8);
  EXPECT_EQ(numberOf({4, 0, 0, 0}), 4);
}

TEST_F(AppleSilicon, PassesThe64BitArmType) { EXPECT_TRUE(isAppleSilicon(0x0100000C)); }

TEST_F(AppleSilicon, PassesThePlainArmType) { EXPECT_TRUE(isAppleSilicon(12)); }

TEST_F(AppleSilicon, PassesWhateverFlagsStandAboveTheLowByte) {
  EXPECT_TRUE(isAppleSilicon(0x7FFFFF0C));
  EXPECT_TRUE(isAppleSilicon(-244));  // 0xFFFFFF0C
}

TEST_F(AppleSilicon, IsTheLowByte12AndNoOther) {
  for (std::int32_t family = 0; family <= 0xFF; ++family) {
    EXPECT_EQ(isAppleSilicon(family), family == 12) << family;
    EXPECT_EQ(isAppleSilicon(0x01000000 | family), family == 12) << family;
  }
}

TEST_F(AppleSilicon, HasNoOtherNameForArm) { EXPECT_EQ(nameOf(0x0100000C), std::nullopt); }

TEST_F(AppleSilicon, RefusesIntel) {
  EXPECT_FALSE(isAppleSilicon(7));
  EXPECT_FALSE(isAppleSilicon(0x01000007));
}

TEST_F(AppleSilicon, NamesIntelX86) {
  EXPECT_EQ(nameOf(7), "x86");
  EXPECT_EQ(nameOf(0x01000007), "x86");
}

TEST_F(AppleSilicon, RefusesEveryOtherTypeAsUnknown) {
  for (const std::int32_t type : {0, 1, 11, 13, 18, 0x0C00, 0x0100000D, 255}) {
    EXPECT_FALSE(isAppleSilicon(type)) << type;
    EXPECT_EQ(nameOf(type), "unknown") << type;
  }
}

TEST_F(AppleSilicon, RefusesAMachineWhoseTypeCannotBeRead) {
  EXPECT_FALSE(info_.isAppleSilicon());
  EXPECT_EQ(info_.otherProcessorName(), "error in CPU type");
}

TEST_F(AppleSilicon, RefusesMinusOneAsAnError) {
  EXPECT_FALSE(isAppleSilicon(-1));
  EXPECT_EQ(nameOf(-1), "error in CPU type");
}

TEST_F(AppleSilicon, RefusesATypeOf64BitsAsAnError) {
  controls_.setBytes(kCPUType, {12, 0, 0, 1, 0, 0, 0, 0});
  EXPECT_FALSE(info_.isAppleSilicon());
  EXPECT_EQ(info_.otherProcessorName(), "error in CPU type");
}

TEST_F(AppleSilicon, ReadsNoOtherVariable) {
  for (const char* name : {"hw.cpusubtype", "hw.cpufamily", "hw.optional.arm64"}) {
    controls_.setInteger(name, 12);
  }
  EXPECT_FALSE(info_.isAppleSilicon());
}

}  // namespace
}  // namespace pallimo::sensors
