// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/simulated_system_controls.h"

#include <gtest/gtest.h>

#include "adapters/simulated/builtin_machine.h"

namespace pallimo::adapters::simulated {
namespace {

const SimulatedSystemControls kControls({{"hw.model", std::string("Mac14,9")},
                                         {"hw.ncpu", std::int64_t{12}},
                                         {"empty", std::string()}});

TEST(SimulatedSystemControls, ReadTextsAndIntegers) {
  EXPECT_EQ(kControls.text("hw.model"), "Mac14,9");
  EXPECT_EQ(kControls.integer("hw.ncpu"), 12);
  EXPECT_EQ(kControls.text("empty"), "");
}

TEST(SimulatedSystemControls, AnAbsentNameCannotBeRead) {
  EXPECT_EQ(kControls.text("hw.none"), std::nullopt);
  EXPECT_EQ(kControls.integer("hw.none"), std::nullopt);
}

TEST(SimulatedSystemControls, AControlOfTheOtherKindCannotBeRead) {
  EXPECT_EQ(kControls.integer("hw.model"), std::nullopt);
  EXPECT_EQ(kControls.text("hw.ncpu"), std::nullopt);
}

TEST(BuiltinSystemControls, DescribeAnAppleSiliconMac) {
  const SimulatedSystemControls controls(systemControlsOf(macBookProM2Pro()));
  EXPECT_EQ(controls.integer("hw.cputype"), 16777228);
  EXPECT_EQ(controls.text("hw.model"), "Mac14,9");
  EXPECT_EQ(controls.text("machdep.cpu.brand_string"), "Apple M2 Pro");
  EXPECT_EQ(controls.integer("hw.ncpu"), 12);
  EXPECT_EQ(controls.integer("hw.perflevel0.logicalcpu"), 8);
  EXPECT_EQ(controls.integer("hw.perflevel1.logicalcpu"), 4);
  EXPECT_EQ(controls.integer("hw.memsize"), 17179869184);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
