// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include "adapters/macos/c_adapters.h"
#include "darwin/on_a_mac.h"
#include "modules/cpu_tick_sampling.h"
#include "sensors/sg_system_info.h"

namespace pallimo::darwin {
namespace {

const fakes::FakeProcessorTicks::Counts kTwoProcessors = {{10, 20, 30, 0}, {1, 2, 0xFFFFFFFF, 0}};

void furnish(TestMac& mac) {
  mac.controls.setText("hw.model", "MacBookPro18,3");
  mac.controls.setInteger("hw.cputype", 0x0100000C);
  mac.ticks.set(kTwoProcessors);
}

class KernelFigures : public OnAMac {
 protected:
  KernelFigures() { furnish(*this); }

  const std::unique_ptr<ports::SystemControls> controls_ = adapters::macos::makeSystemControls();
};

TEST_F(KernelFigures, AVariableIsReadWithAllItsBytes) {
  const auto model = controls_->bytes("hw.model");
  ASSERT_TRUE(model);
  EXPECT_EQ(std::string(model->begin(), model->end()), std::string("MacBookPro18,3\0", 15));
  EXPECT_EQ(controls_->bytes("hw.cputype"), (base::Bytes{0x0C, 0, 0, 1}));
}

TEST_F(KernelFigures, AreThoseThatNameTheMachine) {
  EXPECT_EQ(sensors::SGSystemInfo(*controls_).hardwareModel(), "MacBookPro18,3");
  EXPECT_TRUE(sensors::SGSystemInfo(*controls_).isAppleSilicon());
}

TEST_F(KernelFigures, AVariableThatDoesNotExistGivesNothing) {
  EXPECT_EQ(controls_->bytes("hw.perflevel1.logicalcpu"), std::nullopt);
}

TEST_F(KernelFigures, AVariableMayBeEmpty) {
  controls.setBytes("hw.empty", {});
  EXPECT_EQ(controls_->bytes("hw.empty"), base::Bytes{});
}

/// A variable that changes between the two calls of one read.
class ChangingControls final : public ports::SystemControls {
 public:
  ChangingControls(std::size_t first, std::size_t second) : sizes_{first, second} {}

  std::optional<base::Bytes> bytes(std::string_view) const override {
    return base::Bytes(sizes_[calls_++ % 2], 'x');
  }

 private:
  const std::size_t sizes_[2];
  mutable std::size_t calls_ = 0;
};

TEST_F(KernelFigures, AVariableThatGetsShorterMeanwhileHasItsNewLength) {
  const ChangingControls changing(8, 5);
  mac.systemControls = &changing;
  EXPECT_EQ(controls_->bytes("hw.model"), base::Bytes(5, 'x'));
}

TEST_F(KernelFigures, AVariableThatOutgrowsItsRoomCannotBeRead) {
  const ChangingControls changing(5, 8);
  mac.systemControls = &changing;
  EXPECT_EQ(controls_->bytes("hw.model"), std::nullopt);
}

TEST_F(KernelFigures, TicksAreThoseOfTheProcessorsInTheirOrder) {
  const auto processors = adapters::macos::makeProcessorTicks();
  EXPECT_EQ(processors->read(), kTwoProcessors);
  EXPECT_EQ(mac.journal, Lines{"vm_deallocate 32"});
}

TEST_F(KernelFigures, ACounterBeyond31BitsReadsAsNegative) {
  const auto processors = adapters::macos::makeProcessorTicks();
  EXPECT_EQ(modules::takeTickSnapshot(*processors).at(1).idle, -1);
}

TEST_F(KernelFigures, NoProcessorsAreAnEmptyList) {
  ticks.set({});
  EXPECT_EQ(adapters::macos::makeProcessorTicks()->read(), fakes::FakeProcessorTicks::Counts{});
}

TEST_F(KernelFigures, AFailedCallIsFollowedByTheSameFreeing) {
  ticks.fail();
  EXPECT_EQ(adapters::macos::makeProcessorTicks()->read(), std::nullopt);
  EXPECT_EQ(mac.journal, Lines{"vm_deallocate 0"});
}

TEST_F(KernelFigures, TheHostsPortIsAskedForOnceAndGivenBack) {
  {
    const auto processors = adapters::macos::makeProcessorTicks();
    for (int i = 0; i < 3; ++i) processors->read();
    EXPECT_EQ(mac.held(), Lines{"1 x host port"});
  }
  EXPECT_EQ(mac.held(), Lines{});
}

TEST(KernelFiguresFailures, EachGivesNothing) {
  const auto read = [] {
    const auto model = adapters::macos::makeSystemControls()->bytes("hw.model");
    const auto ticks = adapters::macos::makeProcessorTicks()->read();
    return std::string(model ? "model" : "nothing") + ", " + (ticks ? "ticks" : "nothing");
  };
  EXPECT_EQ(outcomesOfEachFailure(furnish, read),
            (Lines{"no failure: model, ticks", "sysctlbyname: nothing, ticks",
                   "sysctlbyname: nothing, ticks", "host_processor_info: model, nothing"}));
}

}  // namespace
}  // namespace pallimo::darwin
