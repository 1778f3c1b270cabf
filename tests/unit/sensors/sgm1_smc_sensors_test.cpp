// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sgm1_smc_sensors.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "fakes/fake_smc_device.h"

namespace pallimo::sensors {
namespace {

using ports::SMCCommand;
using Names = std::vector<std::string>;

/// An open connection to an SMC without keys. What the records carry and that handles are open when
/// they are used is the fake's to judge.
class SGM1SMCSensorsTest : public ::testing::Test {
 protected:
  SGM1SMCSensorsTest() {
    sensors_.openConnection();
    device_.takeCalls();
  }
  ~SGM1SMCSensorsTest() override { sensors_.closeConnection(); }

  std::optional<double> valueOf(const std::string& type, base::Bytes bytes) {
    device_.setKey("Tp01", "flt ", std::move(bytes));
    return sensors_.readValue("Tp01", type);
  }

  fakes::FakeSmcDevice device_;
  SGM1SMCSensors sensors_{device_};
};

TEST(SGM1SMCSensorsConnection, IsClosedAtFirst) {
  fakes::FakeSmcDevice device;
  const SGM1SMCSensors sensors(device);
  EXPECT_EQ(sensors.conn(), 0u);
  EXPECT_EQ(device.takeCalls(), Names());
}

TEST(SGM1SMCSensorsConnection, KeepsTheHandleWhileItIsOpen) {
  fakes::FakeSmcDevice device;
  SGM1SMCSensors sensors(device);
  sensors.openConnection();
  EXPECT_NE(sensors.conn(), 0u);
  EXPECT_EQ(device.openHandles(), 1u);
  sensors.closeConnection();
  EXPECT_EQ(sensors.conn(), 0u);
  EXPECT_EQ(device.openHandles(), 0u);
}

TEST(SGM1SMCSensorsConnection, ClosesNothingWhenItIsNotOpen) {
  fakes::FakeSmcDevice device;
  SGM1SMCSensors sensors(device);
  sensors.closeConnection();
  EXPECT_EQ(device.takeCalls(), Names());
  EXPECT_EQ(sensors.conn(), 0u);
}

TEST(SGM1SMCSensorsConnection, StaysClosedWhenTheDeviceDoesNotOpen) {
  fakes::FakeSmcDevice device;
  device.setOpens(false);
  SGM1SMCSensors sensors(device);
  sensors.openConnection();
  EXPECT_EQ(sensors.conn(), 0u);
}

TEST_F(SGM1SMCSensorsTest, KeepsItsHandleWhenTheDeviceDoesNotOpenAgain) {
  const std::uint32_t before = sensors_.conn();
  device_.setOpens(false);
  sensors_.openConnection();
  EXPECT_EQ(sensors_.conn(), before);
}

TEST(SGM1SMCSensorsConnection, MakesEveryCallFailWithoutAConnection) {
  fakes::FakeSmcDevice device;
  device.setFloat("Tp01", 45);
  device.setOpens(false);
  SGM1SMCSensors sensors(device);
  sensors.openConnection();
  EXPECT_EQ(sensors.readKeyCount(), std::nullopt);
  EXPECT_EQ(sensors.keyAtIndex(0, 1), Names());
  EXPECT_EQ(sensors.readKeyInfo("Tp01"), std::nullopt);
  EXPECT_EQ(sensors.readValue("Tp01", "flt "), std::nullopt);
}

TEST_F(SGM1SMCSensorsTest, ReadsTheKeyCountFromTheHighestByteOn) {
  device_.setKeyCount(0x01020384);
  EXPECT_EQ(sensors_.readKeyCount(), 0x01020384u);
  EXPECT_EQ(device_.takeCalls(), Names{"read #KEY"});
}

TEST_F(SGM1SMCSensorsTest, ReadsTheLargestKeyCount) {
  device_.setKeyCount(0xFFFFFFFF);
  EXPECT_EQ(sensors_.readKeyCount(), 0xFFFFFFFFu);
}

TEST_F(SGM1SMCSensorsTest, ReadsAKeyCountOfNone) { EXPECT_EQ(sensors_.readKeyCount(), 0u); }

TEST_F(SGM1SMCSensorsTest, HasNoKeyCountWhenItsReadFails) {
  device_.setFloat("Tp01", 45);
  device_.fail(SMCCommand::readBytes, "#KEY");
  EXPECT_EQ(sensors_.readKeyCount(), std::nullopt);
}

TEST_F(SGM1SMCSensorsTest, ListsTheKeysOfTheRangeWithoutItsEnd) {
  for (const char* name : {"Tp01", "FNum", "Tg05", "#KEY"}) device_.setFloat(name, 1);
  EXPECT_EQ(sensors_.keyAtIndex(1, 3), (Names{"FNum", "Tg05"}));
  EXPECT_EQ(device_.takeCalls(), (Names{"index 1", "index 2"}));
}

TEST_F(SGM1SMCSensorsTest, ListsNothingOfAnEmptyRange) {
  device_.setFloat("Tp01", 1);
  EXPECT_EQ(sensors_.keyAtIndex(0, 0), Names());
  EXPECT_EQ(sensors_.keyAtIndex(7, 7), Names());
  EXPECT_EQ(device_.takeCalls(), Names());
}

TEST_F(SGM1SMCSensorsTest, SkipsAnIndexThatFails) {
  for (const char* name : {"Tp01", "Tp05", "Tp0D"}) device_.setFloat(name, 1);
  device_.fail(SMCCommand::keyAtIndex, "Tp05");
  EXPECT_EQ(sensors_.keyAtIndex(0, 3), (Names{"Tp01", "Tp0D"}));
}

TEST_F(SGM1SMCSensorsTest, ReachesTheLastIndexThereIs) {
  EXPECT_EQ(sensors_.keyAtIndex(0xFFFFFFFE, 0xFFFFFFFF), Names());
  EXPECT_EQ(device_.takeCalls(), Names{"index 4294967294"});
}

TEST_F(SGM1SMCSensorsTest, ReadsTheNameOfAKeysType) {
  device_.setFloat("Tp01", 45);
  device_.setFpe2("Tp05", 1, 2);
  EXPECT_EQ(sensors_.readKeyInfo("Tp01"), "flt ");
  EXPECT_EQ(sensors_.readKeyInfo("Tp05"), "fpe2");
  EXPECT_EQ(device_.takeCalls(), (Names{"info Tp01", "info Tp05"}));
}

TEST_F(SGM1SMCSensorsTest, TakesAKeyForAbsentWhenItsInformationFails) {
  device_.setFloat("Tp01", 45);
  device_.fail(SMCCommand::readKeyInfo, "Tp01");
  EXPECT_EQ(sensors_.readKeyInfo("Tp01"), std::nullopt);
}

TEST_F(SGM1SMCSensorsTest, TakesAKeyOfNoSizeForAbsent) {
  device_.setFloat("Tp01", 45);
  device_.setSize("Tp01", 0);
  EXPECT_EQ(sensors_.readKeyInfo("Tp01"), std::nullopt);
}

TEST_F(SGM1SMCSensorsTest, TakesAKeyOfAnyOtherSizeForPresent) {
  device_.setFloat("Tp01", 45);
  for (const std::uint32_t size : {1u, 2u, 4u, 32u, 0x80000000u}) {
    device_.setSize("Tp01", size);
    EXPECT_EQ(sensors_.readKeyInfo("Tp01"), "flt ") << size;
  }
}

TEST_F(SGM1SMCSensorsTest, DecodesAFloatFromTheLowestByteOn) {
  EXPECT_EQ(valueOf("flt ", {0x00, 0x00, 0x34, 0x42}), 45.0);
  EXPECT_EQ(valueOf("flt ", {0x00, 0x00, 0x10, 0xC1}), -9.0);
  EXPECT_EQ(valueOf("flt ", {0x00, 0x00, 0x00, 0x00}), 0.0);
}

TEST_F(SGM1SMCSensorsTest, WidensAFloatAsItIs) {
  EXPECT_EQ(valueOf("flt ", {0xCD, 0xCC, 0xCC, 0x3D}), static_cast<double>(0.1f));
}

TEST_F(SGM1SMCSensorsTest, HandsOnAFloatThatIsNotANumber) {
  const std::optional<double> value = valueOf("flt ", {0x00, 0x00, 0xC0, 0x7F});
  ASSERT_TRUE(value);
  EXPECT_TRUE(std::isnan(*value));
}

TEST_F(SGM1SMCSensorsTest, HandsOnAnInfiniteFloat) {
  EXPECT_EQ(valueOf("flt ", {0x00, 0x00, 0x80, 0x7F}), std::numeric_limits<double>::infinity());
}

TEST_F(SGM1SMCSensorsTest, DropsTheFractionOfAFixedPointValue) {
  EXPECT_EQ(valueOf("fpe2", {0x0B, 0x43}), 720.0);
  EXPECT_EQ(valueOf("fpe2", {0x00, 0x03}), 0.0);
}

TEST_F(SGM1SMCSensorsTest, DecodesTheLargestFixedPointValue) {
  EXPECT_EQ(valueOf("fpe2", {0xFF, 0xFF}), 16383.0);
}

TEST_F(SGM1SMCSensorsTest, DecodesByTheTypeItIsToldAndNotByTheKeys) {
  EXPECT_EQ(valueOf("fpe2", {0x00, 0x00, 0x34, 0x42}), 0.0);
}

TEST_F(SGM1SMCSensorsTest, ReadsMinusOneForEveryOtherType) {
  for (const char* type : {"ui8 ", "sp78", "fpe1", "flt", "FLT ", ""}) {
    EXPECT_EQ(valueOf(type, {0x00, 0x00, 0x34, 0x42}), -1.0) << type;
  }
}

TEST_F(SGM1SMCSensorsTest, HasNoValueWhenTheReadFailsWhateverTheType) {
  device_.setFloat("Tp01", 45);
  device_.fail(SMCCommand::readBytes, "Tp01");
  EXPECT_EQ(sensors_.readValue("Tp01", "flt "), std::nullopt);
  EXPECT_EQ(sensors_.readValue("Tp01", "fpe2"), std::nullopt);
  EXPECT_EQ(sensors_.readValue("Tp01", "ui8 "), std::nullopt);
}

TEST_F(SGM1SMCSensorsTest, LooksAtNoResultInsideTheRecord) {
  device_.setFloat("Tp01", 45);
  device_.setRecordResult(0x84);
  EXPECT_EQ(sensors_.readKeyCount(), 1u);
  EXPECT_EQ(sensors_.keyAtIndex(0, 1), Names{"Tp01"});
  EXPECT_EQ(sensors_.readKeyInfo("Tp01"), "flt ");
  EXPECT_EQ(sensors_.readValue("Tp01", "flt "), 45.0);
}

// The record that a call sends, as the kernel sees it: byte by byte.
class RecordedCall final : public ports::SmcDevice {
 public:
  std::optional<std::uint32_t> open() override { return 77; }
  std::int32_t callStructMethod(std::uint32_t connection, std::uint32_t selector,
                                const ports::SMCRequestRecord& input,
                                ports::SMCRequestRecord&) override {
    sentOn = connection;
    sentTo = selector;
    std::memcpy(sent.data(), &input, sent.size());
    return 0;
  }
  void close(std::uint32_t) override {}

  std::uint32_t sentOn = 0;
  std::uint32_t sentTo = 0;
  std::array<std::uint8_t, 80> sent{};
};

class SGM1SMCSensorsRecord : public ::testing::Test {
 protected:
  SGM1SMCSensorsRecord() { sensors_.openConnection(); }

  RecordedCall device_;
  SGM1SMCSensors sensors_{device_};
  std::array<std::uint8_t, 80> expected_{};
};

TEST_F(SGM1SMCSensorsRecord, AsksForTheKeyCountWithItsKeySizeAndCommand) {
  sensors_.readKeyCount();
  expected_[0] = 'Y';
  expected_[1] = 'E';
  expected_[2] = 'K';
  expected_[3] = '#';
  expected_[28] = 4;
  expected_[42] = 5;
  EXPECT_EQ(device_.sent, expected_);
}

TEST_F(SGM1SMCSensorsRecord, AsksForAKeyByItsIndexAndNothingElse) {
  sensors_.keyAtIndex(0x01020304, 0x01020305);
  expected_[42] = 8;
  for (std::size_t i = 0; i < 4; ++i) expected_[44 + i] = static_cast<std::uint8_t>(4 - i);
  EXPECT_EQ(device_.sent, expected_);
}

TEST_F(SGM1SMCSensorsRecord, AsksForAKeysInformationWithItsSize) {
  sensors_.readKeyInfo("Te05");
  expected_[0] = 0x35;
  expected_[1] = 0x30;
  expected_[2] = 0x65;
  expected_[3] = 0x54;
  expected_[28] = 4;
  expected_[42] = 9;
  EXPECT_EQ(device_.sent, expected_);
}

TEST_F(SGM1SMCSensorsRecord, AsksForAValueWithoutItsType) {
  sensors_.readValue("Te05", "fpe2");
  expected_[0] = 0x35;
  expected_[1] = 0x30;
  expected_[2] = 0x65;
  expected_[3] = 0x54;
  expected_[28] = 4;
  expected_[42] = 5;
  EXPECT_EQ(device_.sent, expected_);
}

TEST_F(SGM1SMCSensorsRecord, GoesToMethod2OfTheOpenConnection) {
  sensors_.readKeyCount();
  EXPECT_EQ(device_.sentTo, 2u);
  EXPECT_EQ(device_.sentOn, 77u);
}

TEST(SGM1SMCSensorsDeathTest, StopsOnARangeThatEndsBeforeItBegins) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  fakes::FakeSmcDevice device;
  SGM1SMCSensors sensors(device);
  EXPECT_DEATH(sensors.keyAtIndex(1, 0), "The range of SMC key indices ends before it begins\\.");
}

}  // namespace
}  // namespace pallimo::sensors
