// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recordings/simulated_system_controls.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "adapters/simulated/machines/builtin_machine.h"
#include "base/bytes.h"

namespace pallimo::adapters::simulated {
namespace {

/// The bytes of a text as the kernel hands them over, its final NUL included.
base::Bytes bytesOf(const std::string& text) {
  return {text.c_str(), text.c_str() + text.size() + 1};
}

std::optional<base::Bytes> bytesIn(SystemControlValue value) {
  return SimulatedSystemControls({{"the control", std::move(value)}}).bytes("the control");
}

/// The control as a count, which takes four bytes.
std::optional<std::int32_t> countIn(const SimulatedSystemControls& controls,
                                    std::string_view name) {
  const std::optional<base::Bytes> bytes = controls.bytes(name);
  std::int32_t count = 0;
  if (!bytes || bytes->size() != sizeof count) return std::nullopt;
  std::memcpy(&count, bytes->data(), sizeof count);
  return count;
}

TEST(SimulatedSystemControls, ATextEndsWithNul) {
  EXPECT_EQ(bytesIn("Mac14,9"), bytesOf("Mac14,9"));
  EXPECT_EQ(bytesIn("")->size(), 1u);
  EXPECT_EQ(bytesIn(""), base::Bytes{0});
}

TEST(SimulatedSystemControls, AnIntegerOf32BitsHasFourBytes) {
  EXPECT_EQ(bytesIn(std::int64_t{0x0100000C}), (base::Bytes{0x0C, 0, 0, 1}));
  EXPECT_EQ(bytesIn(std::int64_t{0}), (base::Bytes{0, 0, 0, 0}));
  EXPECT_EQ(bytesIn(std::int64_t{-1}), (base::Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(bytesIn(std::int64_t{-0x80000000LL}), (base::Bytes{0, 0, 0, 0x80}));
}

TEST(SimulatedSystemControls, AnIntegerOf32BitsNeedsNoSign) {
  EXPECT_EQ(bytesIn(std::int64_t{0xFFFFFFFF}), (base::Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(SimulatedSystemControls, ALargerIntegerHasEightBytes) {
  EXPECT_EQ(bytesIn(std::int64_t{0x100000000}), (base::Bytes{0, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(bytesIn(std::int64_t{-0x80000001LL}),
            (base::Bytes{0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(SimulatedSystemControls, AnAbsentNameCannotBeRead) {
  const SimulatedSystemControls controls({{"hw.model", "Mac14,9"}, {"hw.ncpu", std::int64_t{12}}});
  EXPECT_EQ(controls.bytes("hw.none"), std::nullopt);
  EXPECT_EQ(controls.bytes("hw"), std::nullopt);
}

TEST(BuiltinSystemControls, DescribeAnAppleSiliconMac) {
  const SimulatedSystemControls controls(systemControlsOf(macBookProM2Pro()));
  EXPECT_EQ(countIn(controls, "hw.cputype"), 16777228);
  EXPECT_EQ(controls.bytes("hw.model"), bytesOf("Mac14,9"));
  EXPECT_EQ(controls.bytes("machdep.cpu.brand_string"), bytesOf("Apple M2 Pro"));
  EXPECT_EQ(countIn(controls, "hw.ncpu"), 12);
  EXPECT_EQ(countIn(controls, "hw.perflevel0.logicalcpu"), 8);
  EXPECT_EQ(countIn(controls, "hw.perflevel1.logicalcpu"), 4);
  EXPECT_EQ(countIn(controls, "hw.nperflevels"), 2);
  EXPECT_EQ(controls.bytes("hw.perflevel0.name"), bytesOf("Performance"));
  EXPECT_EQ(controls.bytes("hw.perflevel1.name"), bytesOf("Efficiency"));
  EXPECT_EQ(controls.bytes("hw.memsize"), (base::Bytes{0, 0, 0, 0, 4, 0, 0, 0}));
}

TEST(BuiltinSystemControls, PerformanceLevelNoughtIsTheFastestKindOfCore) {
  const SimulatedSystemControls controls(systemControlsOf(macBookProM5Pro()));
  EXPECT_EQ(countIn(controls, "hw.nperflevels"), 2);
  EXPECT_EQ(controls.bytes("hw.perflevel0.name"), bytesOf("Super"));
  EXPECT_EQ(countIn(controls, "hw.perflevel0.logicalcpu"), 6);
  EXPECT_EQ(controls.bytes("hw.perflevel1.name"), bytesOf("Performance"));
  EXPECT_EQ(countIn(controls, "hw.perflevel1.logicalcpu"), 12);
}

TEST(BuiltinSystemControls, ALevelThatIsNotThereCannotBeRead) {
  const SimulatedSystemControls controls(systemControlsOf(macBookProM2Pro()));
  EXPECT_EQ(controls.bytes("hw.perflevel2.logicalcpu"), std::nullopt);
}

TEST(BuiltinSystemControls, CountTheClustersOfAKindTogether) {
  const SimulatedSystemControls controls(systemControlsOf(macStudioM2Ultra()));
  EXPECT_EQ(countIn(controls, "hw.perflevel0.logicalcpu"), 16);
  EXPECT_EQ(countIn(controls, "hw.perflevel1.logicalcpu"), 8);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
