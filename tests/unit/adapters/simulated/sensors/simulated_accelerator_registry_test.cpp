// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_accelerator_registry.h"

#include <gtest/gtest.h>

#include "movable_steps.h"

namespace pallimo::adapters::simulated {
namespace {

RecordedAccelerator accelerator(const std::string& model, std::uint32_t readFailures = 0) {
  RecordedAccelerator made;
  made.model = base::PropertyList(model);
  made.readFailures = readFailures;
  return made;
}

class SimulatedAcceleratorRegistryTest : public ::testing::Test {
 protected:
  std::uint32_t iterator() { return registry_.matchingServices("IOAccelerator").value_or(0); }

  /// The models of a whole walk; an entry is read until that succeeds. Everything is released.
  std::vector<std::string> models() {
    std::vector<std::string> found;
    const std::uint32_t walk = iterator();
    while (const std::uint32_t entry = registry_.next(walk)) {
      std::optional<base::PropertyList> properties;
      while (!properties) properties = registry_.properties(entry);
      found.push_back(*properties->find("model")->text());
      registry_.release(entry);
    }
    registry_.release(walk);
    return found;
  }

  MovableSteps steps_{{stepWithAccelerators({accelerator("one"), accelerator("two", 2)}),
                       stepWithAccelerators({accelerator("three")}), RecordingStep{},
                       stepWithAccelerators({})}};
  SimulatedAcceleratorRegistry registry_{steps_.now()};
};

TEST_F(SimulatedAcceleratorRegistryTest, WalksTheStepsAcceleratorsInOrder) {
  EXPECT_EQ(models(), (std::vector<std::string>{"one", "two"}));
  steps_.now().moveTo(2);
  EXPECT_EQ(models(), std::vector<std::string>{"three"});
}

TEST_F(SimulatedAcceleratorRegistryTest, TheSearchFailsInAStepThatSaysSo) {
  steps_.now().moveTo(3);
  EXPECT_EQ(registry_.matchingServices("IOAccelerator"), std::nullopt);
  EXPECT_EQ(registry_.openHandles(), 0u);
}

TEST_F(SimulatedAcceleratorRegistryTest, AWalkOverNoAcceleratorsEndsAtOnce) {
  steps_.now().moveTo(4);
  EXPECT_TRUE(models().empty());
}

TEST_F(SimulatedAcceleratorRegistryTest, AnotherClassHasNoEntries) {
  EXPECT_EQ(registry_.matchingServices("IOService"), 0u);
  EXPECT_EQ(registry_.matchingServices(""), 0u);
  EXPECT_EQ(registry_.openHandles(), 0u);
}

TEST_F(SimulatedAcceleratorRegistryTest, AFinishedWalkStaysAtItsEnd) {
  steps_.now().moveTo(4);
  const std::uint32_t walk = iterator();
  EXPECT_EQ(registry_.next(walk), 0u);
  EXPECT_EQ(registry_.next(walk), 0u);
}

TEST_F(SimulatedAcceleratorRegistryTest, AWalkStaysInTheStepWhereItBegan) {
  const std::uint32_t walk = iterator();
  registry_.next(walk);
  steps_.now().moveTo(3);
  EXPECT_NE(registry_.next(walk), 0u);
  EXPECT_EQ(registry_.next(walk), 0u);
}

TEST_F(SimulatedAcceleratorRegistryTest, TwoWalksGoTheirOwnWays) {
  const std::uint32_t first = iterator();
  const std::uint32_t second = iterator();
  EXPECT_NE(first, second);
  registry_.next(first);
  registry_.next(first);
  EXPECT_EQ(registry_.next(first), 0u);
  EXPECT_NE(registry_.next(second), 0u);
}

TEST_F(SimulatedAcceleratorRegistryTest, PropertiesFailAsOftenAsRecordedBeforeTheySucceed) {
  const std::uint32_t walk = iterator();
  registry_.next(walk);
  const std::uint32_t entry = registry_.next(walk);
  EXPECT_EQ(registry_.properties(entry), std::nullopt);
  EXPECT_EQ(registry_.properties(entry), std::nullopt);
  EXPECT_NE(registry_.properties(entry), std::nullopt);
  EXPECT_NE(registry_.properties(entry), std::nullopt);
}

TEST_F(SimulatedAcceleratorRegistryTest, EachWalkCountsFailuresAfresh) {
  models();
  const std::uint32_t walk = iterator();
  registry_.next(walk);
  const std::uint32_t entry = registry_.next(walk);
  EXPECT_EQ(registry_.properties(entry), std::nullopt);
  EXPECT_EQ(registry_.properties(entry), std::nullopt);
  EXPECT_NE(registry_.properties(entry), std::nullopt);
}

TEST_F(SimulatedAcceleratorRegistryTest, HandlesThatAreNotHeldAreHarmless) {
  const std::uint32_t walk = iterator();
  const std::uint32_t entry = registry_.next(walk);
  registry_.release(entry);
  EXPECT_EQ(registry_.properties(entry), std::nullopt);
  EXPECT_EQ(registry_.properties(0), std::nullopt);
  EXPECT_EQ(registry_.next(0), 0u);
  EXPECT_EQ(registry_.next(entry), 0u);
  registry_.release(entry);
  registry_.release(0);
  registry_.release(12'345);
  EXPECT_EQ(registry_.openHandles(), 1u);
}

TEST_F(SimulatedAcceleratorRegistryTest, AHandleIsOneKindOfObject) {
  const std::uint32_t walk = iterator();
  const std::uint32_t entry = registry_.next(walk);
  EXPECT_EQ(registry_.properties(walk), std::nullopt);
  EXPECT_EQ(registry_.next(entry), 0u);
}

TEST_F(SimulatedAcceleratorRegistryTest, AnEntryOutlivesItsWalk) {
  const std::uint32_t walk = iterator();
  const std::uint32_t entry = registry_.next(walk);
  registry_.release(walk);
  steps_.now().moveTo(3);
  EXPECT_EQ(*registry_.properties(entry)->find("model"), base::PropertyList(std::string("one")));
}

TEST_F(SimulatedAcceleratorRegistryTest, NothingStaysOpenWhenEverythingIsReleased) {
  models();
  EXPECT_EQ(registry_.openHandles(), 0u);
}

TEST_F(SimulatedAcceleratorRegistryTest, ALeakShows) {
  const std::uint32_t walk = iterator();
  registry_.next(walk);
  EXPECT_EQ(registry_.openHandles(), 2u);
  registry_.release(walk);
  EXPECT_EQ(registry_.openHandles(), 1u);
}

base::PropertyList propertiesOf(const RecordedAccelerator& recorded) {
  MovableSteps steps({stepWithAccelerators({recorded})});
  SimulatedAcceleratorRegistry registry(steps.now());
  const auto walk = registry.matchingServices("IOAccelerator");
  return registry.properties(registry.next(walk.value())).value();
}

TEST(SimulatedAcceleratorProperties, AreADictionaryOfWhatWasRecorded) {
  RecordedAccelerator recorded = accelerator("Apple M2 Pro");
  recorded.vendorId = base::PropertyList(base::Bytes{0x6B, 0x10, 0, 0});
  recorded.performanceStatistics = base::PropertyList(
      base::PropertyListDictionary{{"Device Utilization %", base::PropertyList(std::int64_t{37})}});
  const base::PropertyList properties = propertiesOf(recorded);
  EXPECT_EQ(*properties.find("vendor-id"), *recorded.vendorId);
  EXPECT_EQ(*properties.find("model"), *recorded.model);
  EXPECT_EQ(*properties.find("PerformanceStatistics"), *recorded.performanceStatistics);
  EXPECT_EQ(properties.dictionary()->size(), 3u);
}

TEST(SimulatedAcceleratorProperties, AreEmptyWhenNothingWasRecorded) {
  EXPECT_EQ(propertiesOf(RecordedAccelerator{}), base::PropertyList());
}

TEST(SimulatedAcceleratorProperties, MayBeOfAnyKind) {
  RecordedAccelerator odd;
  odd.model = base::PropertyList(std::int64_t{7});
  EXPECT_EQ(*propertiesOf(odd).find("model"), base::PropertyList(std::int64_t{7}));
}

}  // namespace
}  // namespace pallimo::adapters::simulated
