// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_smc_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "base/four_char_code.h"
#include "movable_steps.h"

namespace pallimo::adapters::simulated {
namespace {

using ports::SMCCommand;
using ports::SMCRequestRecord;

// The kernel's numbers, written out.
constexpr auto kNotFound = static_cast<std::int32_t>(0xE00002F0);
constexpr auto kNotOpen = static_cast<std::int32_t>(0xE00002CD);
constexpr auto kBadArgument = static_cast<std::int32_t>(0xE00002C2);

SmcKey key(const std::string& name, SmcBytes bytes = smcValue({1, 2, 3, 4})) {
  SmcKey made;
  made.key = name;
  made.type = "flt ";
  made.bytes = bytes;
  return made;
}

RecordedSmc smcOf(std::vector<SmcKey> keys) {
  RecordedSmc smc;
  smc.isAvailable = true;
  smc.keyCount = static_cast<std::uint32_t>(keys.size());
  smc.keys = std::move(keys);
  return smc;
}

SMCRequestRecord requestFor(SMCCommand command, const std::string& name) {
  SMCRequestRecord record;
  record.data8 = static_cast<std::uint8_t>(command);
  record.key = base::encodeFourCharCode(name);
  return record;
}

/// A device with one open handle, and what it answers.
class OpenDevice {
 public:
  explicit OpenDevice(RecordedSmc smc, std::vector<RecordingStep> steps = {RecordingStep{}})
      : steps_(std::move(steps)), device_(std::move(smc), steps_.now()) {
    handle_ = device_.open().value_or(0);
  }

  SimulatedSmcDevice& device() { return device_; }
  std::uint32_t handle() const { return handle_; }
  void moveTo(std::uint64_t request) { steps_.now().moveTo(request); }

  std::int32_t call(const SMCRequestRecord& input, SMCRequestRecord& output) {
    return device_.callStructMethod(handle_, 2, input, output);
  }
  std::int32_t resultOf(const SMCRequestRecord& input) {
    SMCRequestRecord ignored;
    return call(input, ignored);
  }

  std::string keyAt(std::uint32_t index) {
    SMCRequestRecord input;
    input.data8 = 8;
    input.data32 = index;
    SMCRequestRecord output;
    return call(input, output) == 0 ? base::decodeFourCharCode(output.key) : "fails";
  }
  /// "flt  4"
  std::string info(const std::string& name) {
    SMCRequestRecord output;
    if (call(requestFor(SMCCommand::readKeyInfo, name), output) != 0) return "fails";
    return base::decodeFourCharCode(output.keyInfoDataType) + " " +
           std::to_string(output.keyInfoDataSize);
  }
  SmcBytes value(const std::string& name) {
    SMCRequestRecord output;
    if (call(requestFor(SMCCommand::readBytes, name), output) != 0) return std::nullopt;
    std::array<std::uint8_t, 32> bytes{};
    std::copy(std::begin(output.bytes), std::end(output.bytes), bytes.begin());
    return bytes;
  }

 private:
  MovableSteps steps_;
  SimulatedSmcDevice device_;
  std::uint32_t handle_ = 0;
};

TEST(SimulatedSmcDevice, CannotBeOpenedWhenItIsNotAvailable) {
  RecordedSmc smc = smcOf({key("Te05")});
  smc.isAvailable = false;
  MovableSteps steps({RecordingStep{}});
  SimulatedSmcDevice device(smc, steps.now());
  EXPECT_EQ(device.open(), std::nullopt);
}

TEST(SimulatedSmcDevice, GivesEveryCallerAnotherHandleThatIsNotZero) {
  OpenDevice opened(smcOf({}));
  const auto second = opened.device().open();
  EXPECT_NE(opened.handle(), 0u);
  EXPECT_NE(second, 0u);
  EXPECT_NE(second, opened.handle());
}

TEST(SimulatedSmcDevice, AnswersThroughEveryOpenHandle) {
  OpenDevice opened(smcOf({key("Te05")}));
  const std::uint32_t second = opened.device().open().value();
  SMCRequestRecord output;
  EXPECT_EQ(opened.device().callStructMethod(second, 2, requestFor(SMCCommand::readBytes, "Te05"),
                                             output),
            0);
  EXPECT_NE(opened.value("Te05"), std::nullopt);
}

TEST(SimulatedSmcDevice, AHandleThatIsNotOpenFails) {
  OpenDevice opened(smcOf({key("Te05")}));
  SMCRequestRecord output;
  const SMCRequestRecord input = requestFor(SMCCommand::readBytes, "Te05");
  EXPECT_EQ(opened.device().callStructMethod(0, 2, input, output), kNotOpen);
  EXPECT_EQ(opened.device().callStructMethod(opened.handle() + 1, 2, input, output), kNotOpen);
}

TEST(SimulatedSmcDevice, AClosedHandleFails) {
  OpenDevice opened(smcOf({key("Te05")}));
  opened.device().close(opened.handle());
  EXPECT_EQ(opened.resultOf(requestFor(SMCCommand::readBytes, "Te05")), kNotOpen);
}

TEST(SimulatedSmcDevice, ClosingOneHandleLeavesTheOthersOpen) {
  OpenDevice opened(smcOf({key("Te05")}));
  opened.device().close(opened.device().open().value());
  EXPECT_NE(opened.value("Te05"), std::nullopt);
}

TEST(SimulatedSmcDevice, ShowsHowManyHandlesNobodyClosed) {
  OpenDevice opened(smcOf({}));
  opened.device().open();
  EXPECT_EQ(opened.device().openHandles(), 2u);
  opened.device().close(opened.handle());
  opened.device().close(opened.handle());
  EXPECT_EQ(opened.device().openHandles(), 1u);
}

TEST(SimulatedSmcDevice, KnowsOneSelectorAlone) {
  OpenDevice opened(smcOf({key("Te05")}));
  SMCRequestRecord output;
  const SMCRequestRecord input = requestFor(SMCCommand::readBytes, "Te05");
  for (const std::uint32_t selector : {0u, 1u, 3u}) {
    EXPECT_EQ(opened.device().callStructMethod(opened.handle(), selector, input, output),
              kBadArgument);
  }
}

TEST(SimulatedSmcDevice, KnowsThreeCommandsAlone) {
  OpenDevice opened(smcOf({key("Te05")}));
  for (const std::uint8_t command : {0, 1, 4, 6, 7, 10, 255}) {
    EXPECT_EQ(opened.resultOf(requestFor(SMCCommand{command}, "Te05")), kBadArgument);
  }
}

TEST(SimulatedSmcDevice, ACallThatFailsLeavesTheOutputAlone) {
  OpenDevice opened(smcOf({}));
  SMCRequestRecord output;
  output.key = 77;
  opened.call(requestFor(SMCCommand::readBytes, "Te05"), output);
  EXPECT_EQ(output.key, 77u);
}

TEST(SimulatedSmcKeyAtIndex, GivesTheKeysInOrder) {
  OpenDevice opened(smcOf({key("Te05"), key("F0Ac")}));
  EXPECT_EQ(opened.keyAt(0), "Te05");
  EXPECT_EQ(opened.keyAt(1), "F0Ac");
}

TEST(SimulatedSmcKeyAtIndex, FailsWhereTheKeySaysSo) {
  SmcKey hidden = key("F0Ac");
  hidden.indexFails = true;
  OpenDevice opened(smcOf({hidden, key("Te05")}));
  EXPECT_EQ(opened.keyAt(0), "fails");
  EXPECT_EQ(opened.keyAt(1), "Te05");
  EXPECT_NE(opened.value("F0Ac"), std::nullopt);
}

TEST(SimulatedSmcKeyAtIndex, FailsPastTheEndWhateverTheCountSays) {
  RecordedSmc smc = smcOf({key("Te05")});
  smc.keyCount = 9;
  OpenDevice opened(smc);
  EXPECT_EQ(opened.keyAt(1), "fails");
  EXPECT_EQ(opened.keyAt(4'294'967'295), "fails");
}

TEST(SimulatedSmcKeyAtIndex, GivesKeysBeyondACountThatIsTooSmall) {
  RecordedSmc smc = smcOf({key("Te05"), key("Te06")});
  smc.keyCount = 1;
  EXPECT_EQ(OpenDevice(smc).keyAt(1), "Te06");
}

TEST(SimulatedSmcKeyAtIndex, FailsAsNotFound) {
  OpenDevice opened(smcOf({}));
  EXPECT_EQ(opened.resultOf(requestFor(SMCCommand::keyAtIndex, "")), kNotFound);
}

TEST(SimulatedSmcKeyInfo, IsTypeAndSize) {
  SmcKey wide = key("F0Ac");
  wide.type = "ioft";
  wide.size = 8;
  OpenDevice opened(smcOf({key("Te05"), wide}));
  EXPECT_EQ(opened.info("Te05"), "flt  4");
  EXPECT_EQ(opened.info("F0Ac"), "ioft 8");
}

TEST(SimulatedSmcKeyInfo, MayHaveASizeOfZero) {
  SmcKey none = key("Te05");
  none.size = 0;
  EXPECT_EQ(OpenDevice(smcOf({none})).info("Te05"), "flt  0");
}

TEST(SimulatedSmcKeyInfo, FailsWhereTheKeySaysSoAndTheValueStillReads) {
  SmcKey mute = key("Te05");
  mute.infoFails = true;
  OpenDevice opened(smcOf({mute}));
  EXPECT_EQ(opened.resultOf(requestFor(SMCCommand::readKeyInfo, "Te05")), kNotFound);
  EXPECT_EQ(opened.value("Te05"), smcValue({1, 2, 3, 4}));
}

TEST(SimulatedSmcKeyInfo, OfAnUnknownKeyIsNotFound) {
  OpenDevice opened(smcOf({key("Te05")}));
  EXPECT_EQ(opened.resultOf(requestFor(SMCCommand::readKeyInfo, "Te06")), kNotFound);
}

TEST(SimulatedSmcKeyInfo, OfTheKeyCountIsThereThoughNoListNamesIt) {
  EXPECT_EQ(OpenDevice(smcOf({})).info("#KEY"), "ui32 4");
}

TEST(SimulatedSmcValue, HasAllThirtyTwoBytes) {
  std::array<std::uint8_t, 32> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(200 + i);
  EXPECT_EQ(OpenDevice(smcOf({key("Te05", bytes)})).value("Te05"), bytes);
}

TEST(SimulatedSmcValue, FailsWhenItWasNotRecorded) {
  OpenDevice opened(smcOf({key("Te05", std::nullopt)}));
  EXPECT_EQ(opened.resultOf(requestFor(SMCCommand::readBytes, "Te05")), kNotFound);
  EXPECT_EQ(opened.info("Te05"), "flt  4");
}

TEST(SimulatedSmcValue, OfAnUnknownKeyIsNotFound) {
  OpenDevice opened(smcOf({key("Te05")}));
  EXPECT_EQ(opened.resultOf(requestFor(SMCCommand::readBytes, "Te06")), kNotFound);
}

TEST(SimulatedSmcValue, OfANameThatIsListedTwiceIsTheFirst) {
  OpenDevice opened(smcOf({key("Te05", smcValue({1})), key("Te05", smcValue({9}))}));
  EXPECT_EQ(opened.value("Te05"), smcValue({1}));
}

TEST(SimulatedSmcValue, ChangesForItsStepOnly) {
  RecordingStep changed;
  changed.smc.emplace("Te05", smcValue({7}));
  changed.smc.emplace("Te06", std::nullopt);
  OpenDevice opened(smcOf({key("Te05"), key("Te06"), key("Te07")}),
                    {RecordingStep{}, changed, RecordingStep{}});
  EXPECT_EQ(opened.value("Te05"), smcValue({1, 2, 3, 4}));
  opened.moveTo(2);
  EXPECT_EQ(opened.value("Te05"), smcValue({7}));
  EXPECT_EQ(opened.value("Te06"), std::nullopt);
  EXPECT_EQ(opened.value("Te07"), smcValue({1, 2, 3, 4}));
  opened.moveTo(3);
  EXPECT_EQ(opened.value("Te05"), smcValue({1, 2, 3, 4}));
}

TEST(SimulatedSmcValue, MayBeThereForOneStepAlone) {
  RecordingStep changed;
  changed.smc.emplace("Te05", smcValue({7}));
  OpenDevice opened(smcOf({key("Te05", std::nullopt)}), {RecordingStep{}, changed});
  EXPECT_EQ(opened.value("Te05"), std::nullopt);
  opened.moveTo(2);
  EXPECT_EQ(opened.value("Te05"), smcValue({7}));
}

TEST(SimulatedSmcKeyCount, ComesMostSignificantByteFirst) {
  RecordedSmc smc = smcOf({});
  smc.keyCount = 0x01020304;
  EXPECT_EQ(OpenDevice(smc).value("#KEY"), smcValue({1, 2, 3, 4}));
}

TEST(SimulatedSmcKeyCount, AnswersWhateverTheListSaysAboutItself) {
  RecordedSmc smc = smcOf({key("#KEY", smcValue({9, 9, 9, 9}))});
  smc.keyCount = 2;
  EXPECT_EQ(OpenDevice(smc).value("#KEY"), smcValue({0, 0, 0, 2}));
}

TEST(SimulatedSmcKeyCount, FailsWhenItIsAbsentThoughTheListNamesIt) {
  RecordedSmc smc = smcOf({key("#KEY")});
  smc.keyCount.reset();
  OpenDevice opened(smc);
  EXPECT_EQ(opened.resultOf(requestFor(SMCCommand::readBytes, "#KEY")), kNotFound);
  EXPECT_EQ(opened.keyAt(0), "#KEY");
}

}  // namespace
}  // namespace pallimo::adapters::simulated
