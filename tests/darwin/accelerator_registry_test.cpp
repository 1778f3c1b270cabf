// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ports/accelerator_registry.h"

#include <gtest/gtest.h>

#include "adapters/macos/c_adapters.h"
#include "base/text_format.h"
#include "darwin/on_a_mac.h"
#include "sensors/sg_system_gpu_info.h"

namespace pallimo::darwin {
namespace {

using fakes::FakeAcceleratorRegistry;

const Lines kMainPort = {"1 x main port"};

void furnish(TestMac& mac) {
  mac.accelerators.add(FakeAcceleratorRegistry::appleGPU("Apple M1", 37), 2);
  mac.accelerators.add(FakeAcceleratorRegistry::appleGPU("Apple M2", 50));
}

std::string gpu() {
  const auto registry = adapters::macos::makeAcceleratorRegistry();
  const auto record = sensors::SGSystemGPUInfo(*registry).readGPUInfo();
  if (!record) return "nothing";
  return record->name + " " + base::formatFixed(record->utilisation, 2);
}

class AcceleratorRegistry : public OnAMac {
 protected:
  AcceleratorRegistry() {
    furnish(*this);
    kept_ = kMainPort;
  }

  /// What the first entry's properties read as when the kernel keeps them in that object.
  std::optional<base::PropertyList> propertiesKeptAs(const FakeObject* object) {
    mac.registryProperties = [object] {
      const void* const pointer = object;
      return static_cast<CFMutableDictionaryRef>(const_cast<void*>(pointer));
    };
    const auto iterator = registry_->matchingServices("IOAccelerator");
    const auto entry = registry_->next(iterator.value_or(0));
    auto properties = registry_->properties(entry);
    registry_->release(entry);
    registry_->release(iterator.value_or(0));
    return properties;
  }

  const std::unique_ptr<ports::AcceleratorRegistry> registry_ =
      adapters::macos::makeAcceleratorRegistry();
};

TEST_F(AcceleratorRegistry, ReadsAnEntryUntilItAnswers) { EXPECT_EQ(gpu(), "Apple M1 0.37"); }

TEST_F(AcceleratorRegistry, AskingAgainOnlyAddsAReferenceToTheMainPort) {
  for (int i = 0; i < 3; ++i) gpu();
  kept_ = {"3 x main port"};
}

TEST_F(AcceleratorRegistry, WalksTheEntriesInOrder) {
  const auto iterator = registry_->matchingServices("IOAccelerator");
  ASSERT_TRUE(iterator);
  const auto first = registry_->next(*iterator);
  const auto second = registry_->next(*iterator);
  EXPECT_EQ(registry_->next(*iterator), 0u);
  EXPECT_EQ(*registry_->properties(second)->find("model")->text(), "Apple M2");
  for (const auto object : {first, second, *iterator}) registry_->release(object);
}

TEST_F(AcceleratorRegistry, ASearchWithoutAMatchMayGiveTheIteratorZero) {
  accelerators.clear();
  accelerators.setEmptySearch(FakeAcceleratorRegistry::EmptySearch::zero);
  EXPECT_EQ(registry_->matchingServices("IOAccelerator"), 0u);
  EXPECT_EQ(registry_->next(0), 0u);
}

TEST_F(AcceleratorRegistry, ASearchThatFailsGivesNothing) {
  accelerators.setSearchFails(true);
  EXPECT_EQ(registry_->matchingServices("IOAccelerator"), std::nullopt);
}

TEST_F(AcceleratorRegistry, ACallThatFailsGivesNothing) {
  const auto iterator = registry_->matchingServices("IOAccelerator");
  const auto entry = registry_->next(*iterator);
  EXPECT_EQ(registry_->properties(entry), std::nullopt);
  registry_->release(entry);
  registry_->release(*iterator);
}

TEST_F(AcceleratorRegistry, ASuccessWithoutPropertiesIsAnEmptyDictionary) {
  EXPECT_EQ(propertiesKeptAs(nullptr), base::PropertyList());
}

TEST_F(AcceleratorRegistry, AnOddEntryIsReadWithoutItsOddValues) {
  FakeDictionary entries;
  entries.emplace_back(mac.objects.make(std::string("set")),
                       mac.objects.make(FakeThing{"set", nullptr}));
  entries.emplace_back(mac.objects.make(std::string("model")),
                       mac.objects.make(std::string("Apple M1")));
  base::PropertyListDictionary expected;
  expected.emplace_back("model", base::PropertyList(std::string("Apple M1")));
  EXPECT_EQ(propertiesKeptAs(mac.objects.make(std::move(entries))), base::PropertyList(expected));
}

TEST(AcceleratorRegistryFailures, EachButAReadEndsTheWalk) {
  const std::string all = "Apple M1 0.37";
  const auto furnishOne = [](TestMac& mac) {
    mac.accelerators.add(FakeAcceleratorRegistry::appleGPU("Apple M1", 37));
  };
  EXPECT_EQ(outcomesOfEachFailure(furnishOne, gpu, {"main port"}),
            (Lines{"no failure: " + all, "IOMasterPort: nothing", "IOServiceMatching: nothing",
                   "IOServiceGetMatchingServices: nothing", "IOIteratorNext: nothing",
                   "IORegistryEntryCreateCFProperties: " + all, "IOIteratorNext: " + all}));
}

}  // namespace
}  // namespace pallimo::darwin
