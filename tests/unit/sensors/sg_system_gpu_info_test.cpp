// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sg_system_gpu_info.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/fake_accelerator_registry.h"

namespace pallimo::sensors {
namespace {

using base::PropertyList;
using base::PropertyListDictionary;
using fakes::FakeAcceleratorRegistry;
using Calls = std::vector<std::string>;
using EmptySearch = FakeAcceleratorRegistry::EmptySearch;

constexpr const char* kVendor = "vendor-id";
constexpr const char* kModel = "model";
constexpr const char* kStatistics = "PerformanceStatistics";

PropertyListDictionary gpu(const std::string& model, std::int64_t percent) {
  return FakeAcceleratorRegistry::appleGPU(model, percent);
}

PropertyListDictionary without(PropertyListDictionary properties, const std::string& key) {
  std::erase_if(properties, [&](const auto& entry) { return entry.first == key; });
  return properties;
}

PropertyListDictionary with(PropertyListDictionary properties, const std::string& key,
                            PropertyList value) {
  properties = without(std::move(properties), key);
  properties.emplace_back(key, std::move(value));
  return properties;
}

/// The record of a driver that tells the utilisation.
GPUInfoRecord told(const std::string& name, double utilisation) {
  return {name, utilisation, true};
}

PropertyListDictionary othersGPU(const std::string& model, std::int64_t percent) {
  return with(gpu(model, percent), kVendor, PropertyList(base::Bytes{0xDE, 0x10, 0, 0}));
}

PropertyList statisticsOf(PropertyList percent) {
  return PropertyList(with({}, "Device Utilization %", std::move(percent)));
}

/// That every handle is released exactly once and none used after it is the fake's to judge.
class SGSystemGPUInfoTest : public ::testing::Test {
 protected:
  std::optional<GPUInfoRecord> read() { return info_.readGPUInfo(); }
  std::optional<GPUInfoRecord> readOnly(PropertyListDictionary properties) {
    registry_.clear();
    registry_.add(std::move(properties));
    return read();
  }
  std::optional<GPUInfoRecord> readWithVendor(base::Bytes vendor) {
    return readOnly(with(gpu("Apple M2", 37), kVendor, PropertyList(std::move(vendor))));
  }
  double utilisationOf(PropertyList statistics) {
    const auto record = readOnly(with(gpu("Apple M2", 1), kStatistics, std::move(statistics)));
    EXPECT_TRUE(record);
    return record ? record->utilisation : -1;
  }

  FakeAcceleratorRegistry registry_;
  const SGSystemGPUInfo info_{registry_};
};

TEST_F(SGSystemGPUInfoTest, ReadsNameAndUtilisation) {
  EXPECT_EQ(readOnly(gpu("Apple M2 Pro", 37)), told("Apple M2 Pro", 0.37));
}

TEST_F(SGSystemGPUInfoTest, ReadsAnIdleGPU) {
  EXPECT_EQ(readOnly(gpu("Apple M2", 0)), told("Apple M2", 0.0));
}

TEST_F(SGSystemGPUInfoTest, ReadsAFullyBusyGPU) {
  EXPECT_EQ(readOnly(gpu("Apple M2", 100)), told("Apple M2", 1.0));
}

TEST_F(SGSystemGPUInfoTest, WalksTheRegistryAnewEachTime) {
  EXPECT_EQ(readOnly(gpu("Apple M2", 37)), told("Apple M2", 0.37));
  EXPECT_EQ(readOnly(gpu("Apple M4", 50)), told("Apple M4", 0.5));
  registry_.clear();
  EXPECT_EQ(read(), std::nullopt);
}

TEST_F(SGSystemGPUInfoTest, IsNothingWhenTheSearchFails) {
  registry_.add(gpu("Apple M2", 37));
  registry_.setSearchFails(true);
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_EQ(registry_.takeCalls(), Calls{"search IOAccelerator"});
}

TEST_F(SGSystemGPUInfoTest, IsNothingWithoutAnEntryAndReleasesTheIterator) {
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_EQ(registry_.takeCalls(), (Calls{"search IOAccelerator", "next", "release iterator"}));
}

TEST_F(SGSystemGPUInfoTest, IsNothingWithoutAnIteratorAndReleasesNone) {
  registry_.setEmptySearch(EmptySearch::zero);
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_EQ(registry_.takeCalls(), Calls{"search IOAccelerator"});
}

TEST_F(SGSystemGPUInfoTest, WalksToTheEndAndReleasesEveryEntryAndTheIterator) {
  registry_.add(gpu("first", 1));
  registry_.add(othersGPU("other", 2));
  registry_.add({});
  registry_.add(without(gpu("none", 3), kVendor));
  EXPECT_EQ(read(), told("first", 0.01));
  const Calls expected = {"search IOAccelerator",
                          "next",
                          "properties of 0",
                          "release 0",
                          "next",
                          "properties of 1",
                          "release 1",
                          "next",
                          "properties of 2",
                          "release 2",
                          "next",
                          "properties of 3",
                          "release 3",
                          "next",
                          "release iterator"};
  EXPECT_EQ(registry_.takeCalls(), expected);
  EXPECT_EQ(registry_.heldHandles(), 0u);
}

TEST_F(SGSystemGPUInfoTest, ReadsAnEntryAgainUntilItSucceeds) {
  registry_.add(gpu("Apple M2", 37), 3);
  EXPECT_EQ(read(), told("Apple M2", 0.37));
  const Calls expected = {"search IOAccelerator",
                          "next",
                          "properties of 0",
                          "properties of 0",
                          "properties of 0",
                          "properties of 0",
                          "release 0",
                          "next",
                          "release iterator"};
  EXPECT_EQ(registry_.takeCalls(), expected);
}

TEST_F(SGSystemGPUInfoTest, ReadsAnotherVendorsEntryAgainToo) {
  registry_.add(othersGPU("other", 37), 2);
  EXPECT_EQ(read(), std::nullopt);
  const Calls expected = {"search IOAccelerator",
                          "next",
                          "properties of 0",
                          "properties of 0",
                          "properties of 0",
                          "release 0",
                          "next",
                          "release iterator"};
  EXPECT_EQ(registry_.takeCalls(), expected);
}

TEST_F(SGSystemGPUInfoTest, ReadsEachEntryAgainOnItsOwn) {
  registry_.add(without(gpu("first", 10), kStatistics), 1);
  registry_.add(gpu("second", 20), 2);
  EXPECT_EQ(read(), told("second", 0.2));
  const Calls expected = {"search IOAccelerator",
                          "next",
                          "properties of 0",
                          "properties of 0",
                          "release 0",
                          "next",
                          "properties of 1",
                          "properties of 1",
                          "properties of 1",
                          "release 1",
                          "next",
                          "release iterator"};
  EXPECT_EQ(registry_.takeCalls(), expected);
}

TEST_F(SGSystemGPUInfoTest, NeverSkipsAnEntryWhoseReadFailsAtFirst) {
  registry_.add(gpu("first", 10), 1);
  registry_.add(gpu("second", 20));
  EXPECT_EQ(read(), told("first", 0.1));
}

TEST_F(SGSystemGPUInfoTest, SkipsAnEntryWithoutProperties) {
  registry_.add({});
  registry_.add(gpu("Apple M2", 37));
  EXPECT_EQ(read(), told("Apple M2", 0.37));
}

TEST_F(SGSystemGPUInfoTest, SkipsAnEntryWithoutAVendor) {
  EXPECT_EQ(readOnly(without(gpu("Apple M2", 37), kVendor)), std::nullopt);
}

TEST_F(SGSystemGPUInfoTest, SkipsAVendorThatIsNoData) {
  EXPECT_EQ(readOnly(with(gpu("Apple M2", 37), kVendor, PropertyList(std::int64_t{4203}))),
            std::nullopt);
  EXPECT_EQ(readOnly(with(gpu("Apple M2", 37), kVendor, PropertyList(std::string("k\x10\0\0", 4)))),
            std::nullopt);
}

TEST_F(SGSystemGPUInfoTest, SkipsAVendorOfAnotherLength) {
  EXPECT_EQ(readWithVendor({0x6B, 0x10, 0, 0, 0, 0, 0, 0}), std::nullopt);
  EXPECT_EQ(readWithVendor({0x6B, 0x10, 0, 0, 0}), std::nullopt);
  EXPECT_EQ(readWithVendor({0x6B, 0x10, 0}), std::nullopt);
  EXPECT_EQ(readWithVendor({0x6B, 0x10}), std::nullopt);
  EXPECT_EQ(readWithVendor({}), std::nullopt);
}

TEST_F(SGSystemGPUInfoTest, SkipsOtherVendors) {
  EXPECT_EQ(readWithVendor({0x02, 0x10, 0, 0}), std::nullopt);
  EXPECT_EQ(readWithVendor({0x6B, 0x10, 0, 1}), std::nullopt);
  EXPECT_EQ(readWithVendor({0, 0, 0x10, 0x6B}), std::nullopt);
}

TEST_F(SGSystemGPUInfoTest, TakesTheFirstWithStatistics) {
  registry_.add(without(gpu("first", 10), kStatistics));
  registry_.add(gpu("second", 20));
  registry_.add(gpu("third", 30));
  EXPECT_EQ(read(), told("second", 0.2));
}

TEST_F(SGSystemGPUInfoTest, TakesTheFirstWithStatisticsAlsoWhenOnlyALaterOneTells) {
  registry_.add(with(gpu("first", 10), kStatistics, PropertyList(PropertyListDictionary())));
  registry_.add(gpu("second", 20));
  EXPECT_EQ(read(), (GPUInfoRecord{"first", 0.0, false}));
}

TEST_F(SGSystemGPUInfoTest, PassesOverAnotherVendorsStatistics) {
  registry_.add(othersGPU("first", 10));
  registry_.add(gpu("second", 20));
  EXPECT_EQ(read(), told("second", 0.2));
}

TEST_F(SGSystemGPUInfoTest, PassesOverStatisticsThatAreNoDictionary) {
  registry_.add(with(gpu("first", 10), kStatistics, PropertyList(std::string("busy"))));
  registry_.add(gpu("second", 20));
  EXPECT_EQ(read(), told("second", 0.2));
}

TEST_F(SGSystemGPUInfoTest, IsNothingWhenNoneHasStatistics) {
  EXPECT_EQ(readOnly(without(gpu("Apple M2", 10), kStatistics)), std::nullopt);
}

TEST_F(SGSystemGPUInfoTest, IsUnknownWithoutAModel) {
  EXPECT_EQ(readOnly(without(gpu("", 10), kModel)), told("Unknown", 0.1));
}

TEST_F(SGSystemGPUInfoTest, IsUnknownWhenTheModelIsNoText) {
  EXPECT_EQ(readOnly(with(gpu("", 10), kModel, PropertyList(base::Bytes{'M', '2'}))),
            told("Unknown", 0.1));
}

TEST_F(SGSystemGPUInfoTest, KeepsAnEmptyModel) { EXPECT_EQ(readOnly(gpu("", 10)), told("", 0.1)); }

TEST_F(SGSystemGPUInfoTest, TakesTheNameFromTheChosenEntry) {
  registry_.add(without(gpu("first", 10), kStatistics));
  registry_.add(without(gpu("second", 20), kModel));
  EXPECT_EQ(read(), told("Unknown", 0.2));
}

TEST_F(SGSystemGPUInfoTest, ReadsUtilisationFromARealToo) {
  EXPECT_EQ(utilisationOf(statisticsOf(PropertyList(12.5))), 0.125);
}

TEST_F(SGSystemGPUInfoTest, HasNoUtilisationWhenTheStatisticsDoNotTell) {
  EXPECT_EQ(readOnly(with(gpu("Apple M2", 1), kStatistics, PropertyList(PropertyListDictionary()))),
            (GPUInfoRecord{"Apple M2", 0.0, false}));
}

TEST_F(SGSystemGPUInfoTest, TellsThatTheUtilisationIsNoNumber) {
  const auto record = readOnly(
      with(gpu("Apple M2", 1), kStatistics, statisticsOf(PropertyList(std::string("37")))));
  EXPECT_EQ(record, (GPUInfoRecord{"Apple M2", 0.0, false}));
}

TEST_F(SGSystemGPUInfoTest, HasNoUtilisationWhenItIsNoNumber) {
  EXPECT_EQ(utilisationOf(statisticsOf(PropertyList(std::string("37")))), 0.0);
  EXPECT_EQ(utilisationOf(statisticsOf(PropertyList(base::Bytes{37}))), 0.0);
  EXPECT_EQ(utilisationOf(statisticsOf(PropertyList(true))), 0.0);
}

}  // namespace
}  // namespace pallimo::sensors
