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

/// The bytes of a text as the kernel hands them over, its final NUL included.
base::Bytes bytesOf(const std::string& text) {
  return {text.c_str(), text.c_str() + text.size() + 1};
}

TEST(SimulatedSystemControls, ReadTextsAndIntegers) {
  EXPECT_EQ(kControls.bytes("hw.model"), bytesOf("Mac14,9"));
  EXPECT_EQ(kControls.integer("hw.ncpu"), 12);
}

TEST(SimulatedSystemControls, TextsEndWithNul) {
  EXPECT_EQ(kControls.bytes("empty"), base::Bytes{0});
  EXPECT_EQ(kControls.bytes("hw.model")->size(), 8u);
}

TEST(SimulatedSystemControls, AnAbsentNameCannotBeRead) {
  EXPECT_EQ(kControls.bytes("hw.none"), std::nullopt);
  EXPECT_EQ(kControls.integer("hw.none"), std::nullopt);
}

TEST(SimulatedSystemControls, AControlOfTheOtherKindCannotBeRead) {
  EXPECT_EQ(kControls.integer("hw.model"), std::nullopt);
  EXPECT_EQ(kControls.bytes("hw.ncpu"), std::nullopt);
}

TEST(BuiltinSystemControls, DescribeAnAppleSiliconMac) {
  const SimulatedSystemControls controls(systemControlsOf(macBookProM2Pro()));
  EXPECT_EQ(controls.integer("hw.cputype"), 16777228);
  EXPECT_EQ(controls.bytes("hw.model"), bytesOf("Mac14,9"));
  EXPECT_EQ(controls.bytes("machdep.cpu.brand_string"), bytesOf("Apple M2 Pro"));
  EXPECT_EQ(controls.integer("hw.ncpu"), 12);
  EXPECT_EQ(controls.integer("hw.perflevel0.logicalcpu"), 8);
  EXPECT_EQ(controls.integer("hw.perflevel1.logicalcpu"), 4);
  EXPECT_EQ(controls.integer("hw.nperflevels"), 2);
  EXPECT_EQ(controls.bytes("hw.perflevel0.name"), bytesOf("Performance"));
  EXPECT_EQ(controls.bytes("hw.perflevel1.name"), bytesOf("Efficiency"));
  EXPECT_EQ(controls.integer("hw.memsize"), 17179869184);
}

TEST(BuiltinSystemControls, PerformanceLevelNoughtIsTheFastestKindOfCore) {
  const SimulatedSystemControls controls(systemControlsOf(macBookProM5Pro()));
  EXPECT_EQ(controls.integer("hw.nperflevels"), 2);
  EXPECT_EQ(controls.bytes("hw.perflevel0.name"), bytesOf("Super"));
  EXPECT_EQ(controls.integer("hw.perflevel0.logicalcpu"), 6);
  EXPECT_EQ(controls.bytes("hw.perflevel1.name"), bytesOf("Performance"));
  EXPECT_EQ(controls.integer("hw.perflevel1.logicalcpu"), 12);
}

TEST(BuiltinSystemControls, ALevelThatIsNotThereCannotBeRead) {
  const SimulatedSystemControls controls(systemControlsOf(macBookProM2Pro()));
  EXPECT_EQ(controls.integer("hw.perflevel2.logicalcpu"), std::nullopt);
}

TEST(BuiltinSystemControls, CountTheClustersOfAKindTogether) {
  const SimulatedSystemControls controls(systemControlsOf(macStudioM2Ultra()));
  EXPECT_EQ(controls.integer("hw.perflevel0.logicalcpu"), 16);
  EXPECT_EQ(controls.integer("hw.perflevel1.logicalcpu"), 8);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
