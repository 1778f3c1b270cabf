// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/impatient_accelerator_registry.h"

#include <gtest/gtest.h>

#include "fakes/fake_accelerator_registry.h"
#include "sensors/sg_system_gpu_info.h"

namespace pallimo::app {
namespace {

using fakes::FakeAcceleratorRegistry;

TEST(ImpatientAcceleratorRegistry, ReadsAnEntryAgainUntilItAnswers) {
  FakeAcceleratorRegistry registry;
  registry.add(FakeAcceleratorRegistry::appleGPU("Apple M2", 20), 999);
  ImpatientAcceleratorRegistry impatient(registry);
  const auto gpu = sensors::SGSystemGPUInfo(impatient).readGPUInfo();
  ASSERT_TRUE(gpu.has_value());
  EXPECT_EQ(gpu->name, "Apple M2");
  EXPECT_FALSE(impatient.hasGivenUp());
}

TEST(ImpatientAcceleratorRegistry, GivesUpAnEntryThatNeverDoes) {
  FakeAcceleratorRegistry registry;
  registry.add(FakeAcceleratorRegistry::appleGPU("Apple M2", 20), 1'000'000);
  ImpatientAcceleratorRegistry impatient(registry);
  EXPECT_FALSE(sensors::SGSystemGPUInfo(impatient).readGPUInfo().has_value());
  EXPECT_TRUE(impatient.hasGivenUp());
}

}  // namespace
}  // namespace pallimo::app
