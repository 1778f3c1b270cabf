// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_main_title.h"

#include "fakes/fake_accelerator_registry.h"
#include "fakes/fake_program_launcher.h"
#include "fakes/fake_system_controls.h"

namespace pallimo::modules {
namespace {

using base::PropertyList;

constexpr const char* kProfiler = "/usr/sbin/system_profiler -xml SPDisplaysDataType";

/// A display report whose GPU has that many cores, whatever bytes it is read from.
class ReportReader final : public ports::PropertyListReader {
 public:
  void setCores(std::string cores) { cores_ = std::move(cores); }

  std::optional<PropertyList> readWithout(std::span<const std::uint8_t>,
                                          std::span<const std::string_view>) const override {
    const PropertyList item({{"sppci_cores", PropertyList(cores_)}});
    const PropertyList items(base::PropertyListArray{item});
    const PropertyList section({{"_items", items}});
    return PropertyList(base::PropertyListArray{section});
  }

 private:
  std::string cores_ = "19";
};

/// An Apple M2 Pro with 4 efficiency cores, 8 performance cores and a GPU of 19.
struct TitleFixture {
  fakes::FakeSystemControls controls;
  fakes::FakeAcceleratorRegistry accelerators;
  fakes::FakeProgramLauncher launcher;
  ReportReader propertyLists;

  TitleFixture() {
    controls.setText("machdep.cpu.brand_string", "Apple M2 Pro");
    controls.setInteger("hw.perflevel0.logicalcpu", 8);
    controls.setInteger("hw.perflevel1.logicalcpu", 4);
    accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro GPU", 10));
    launcher.setOutput(kProfiler, "a report");
  }

  std::shared_ptr<ModuleModelMainTitle> create() {
    return ModuleModelMainTitle::create({controls, accelerators, launcher, propertyLists});
  }
};

TEST(ModuleModelMainTitle, NamesTheChipAndTheGPU) {
  TitleFixture f;
  const auto title = f.create();
  EXPECT_EQ(title->appleSiliconName(), "Apple M2 Pro");
  EXPECT_EQ(title->gpuName(), "Apple M2 Pro GPU");
}

TEST(ModuleModelMainTitle,
     PerformanceLevelOneAreTheEfficiencyCoresAndLevelZeroThePerformanceCores) {
  TitleFixture f;
  const auto title = f.create();
  EXPECT_EQ(title->numberOfECore(), 4);
  EXPECT_EQ(title->numberOfPCore(), 8);
}

TEST(ModuleModelMainTitle, CountsTheGPUsCores) {
  TitleFixture f;
  EXPECT_EQ(f.create()->numberOfGPUCore(), 19);
  f.propertyLists.setCores("-1");
  EXPECT_EQ(f.create()->numberOfGPUCore(), -1);
}

TEST(ModuleModelMainTitle, WithoutAReportTheGPUsCoresAreUnknown) {
  TitleFixture f;
  fakes::FakeProgramLauncher launchesNothing;
  const auto title =
      ModuleModelMainTitle::create({f.controls, f.accelerators, launchesNothing, f.propertyLists});
  EXPECT_EQ(title->numberOfGPUCore(), -1);
}

TEST(ModuleModelMainTitle, WithoutAnAcceleratorTheGPUIsUnknown) {
  TitleFixture f;
  f.accelerators.clear();
  EXPECT_EQ(f.create()->gpuName(), "Unknown");
}

TEST(ModuleModelMainTitle, AnAcceleratorWithoutAModelIsUnknown) {
  TitleFixture f;
  auto properties = fakes::FakeAcceleratorRegistry::appleGPU("", 10);
  for (auto& [key, value] : properties) {
    if (key == "model") value = PropertyList(std::int64_t{2});
  }
  f.accelerators.clear();
  f.accelerators.add(properties);
  EXPECT_EQ(f.create()->gpuName(), "Unknown");
}

TEST(ModuleModelMainTitle, AKernelWithoutPerformanceLevelsHasFourCoresOfEach) {
  TitleFixture f;
  fakes::FakeSystemControls older;
  older.setText("machdep.cpu.brand_string", "Apple M1");
  const auto title =
      ModuleModelMainTitle::create({older, f.accelerators, f.launcher, f.propertyLists});
  EXPECT_EQ(title->numberOfECore(), 4);
  EXPECT_EQ(title->numberOfPCore(), 4);
}

TEST(ModuleModelMainTitle, EachPerformanceLevelIsMissedAlone) {
  TitleFixture f;
  fakes::FakeSystemControls one;
  one.setText("machdep.cpu.brand_string", "Apple M5");
  one.setInteger("hw.perflevel0.logicalcpu", 10);
  const auto title =
      ModuleModelMainTitle::create({one, f.accelerators, f.launcher, f.propertyLists});
  EXPECT_EQ(title->numberOfECore(), 4);
  EXPECT_EQ(title->numberOfPCore(), 10);
}

TEST(ModuleModelMainTitle, NoCoresOfAKindAreNoCores) {
  TitleFixture f;
  f.controls.setInteger("hw.perflevel1.logicalcpu", 0);
  EXPECT_EQ(f.create()->numberOfECore(), 0);
}

TEST(ModuleModelMainTitle, EverythingIsReadOnce) {
  TitleFixture f;
  const auto title = f.create();
  EXPECT_EQ(f.launcher.takeCommands(), std::vector<std::string>{kProfiler});
  f.controls.setText("machdep.cpu.brand_string", "Apple M9");
  f.controls.setInteger("hw.perflevel0.logicalcpu", 99);
  f.accelerators.clear();
  f.accelerators.takeCalls();
  EXPECT_EQ(title->appleSiliconName(), "Apple M2 Pro");
  EXPECT_EQ(title->gpuName(), "Apple M2 Pro GPU");
  EXPECT_EQ(title->numberOfPCore(), 8);
  EXPECT_TRUE(f.accelerators.takeCalls().empty());
  EXPECT_TRUE(f.launcher.takeCommands().empty());
}

TEST(ModuleModelMainTitleDeathTest, AMachineWithoutAChipsNameStopsTheProgram) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        TitleFixture f;
        fakes::FakeSystemControls nameless;
        ModuleModelMainTitle::create({nameless, f.accelerators, f.launcher, f.propertyLists});
      },
      "machdep.cpu.brand_string");
}

}  // namespace
}  // namespace pallimo::modules
