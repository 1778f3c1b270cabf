// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_main_title.h"

#include "fakes/fake_accelerator_registry.h"
#include "fakes/fake_program_launcher.h"
#include "fakes/fake_system_controls.h"
#include "fakes/journal.h"

namespace pallimo::modules {
namespace {

using base::PropertyList;

constexpr const char* kProfiler = "/usr/sbin/system_profiler -xml SPDisplaysDataType";

/// A display report whose GPU has that many cores, whatever bytes it is read from.
class ReportReader final : public ports::PropertyListReader {
 public:
  void setCores(std::string cores) { cores_ = std::move(cores); }

  std::optional<PropertyList> readOnly(std::span<const std::uint8_t>,
                                       const ports::Wanted& /*wanted*/) const override {
    const PropertyList item({{"sppci_cores", PropertyList(cores_)}});
    const PropertyList items(base::PropertyListArray{item});
    const PropertyList section({{"_items", items}});
    return PropertyList(base::PropertyListArray{section});
  }

 private:
  std::string cores_ = "19";
};

/// Kernel variables that note the name of each that is read.
class JournaledControls final : public ports::SystemControls {
 public:
  JournaledControls(const ports::SystemControls& controls, fakes::Journal& journal)
      : controls_(controls), journal_(journal) {}

  std::optional<base::Bytes> bytes(std::string_view name) const override {
    journal_.add(std::string(name));
    return controls_.bytes(name);
  }

 private:
  const ports::SystemControls& controls_;
  fakes::Journal& journal_;
};

/// Accelerators that note each search.
class JournaledAccelerators final : public ports::AcceleratorRegistry {
 public:
  JournaledAccelerators(ports::AcceleratorRegistry& registry, fakes::Journal& journal)
      : registry_(registry), journal_(journal) {}

  std::optional<std::uint32_t> matchingServices(std::string_view className) override {
    journal_.add(std::string(className));
    return registry_.matchingServices(className);
  }
  std::uint32_t next(std::uint32_t iterator) override { return registry_.next(iterator); }
  std::optional<PropertyList> properties(std::uint32_t entry) override {
    return registry_.properties(entry);
  }
  void release(std::uint32_t object) override { registry_.release(object); }

 private:
  ports::AcceleratorRegistry& registry_;
  fakes::Journal& journal_;
};

/// Programs that note the path of each that is run.
class JournaledLauncher final : public ports::ProgramLauncher {
 public:
  JournaledLauncher(ports::ProgramLauncher& launcher, fakes::Journal& journal)
      : launcher_(launcher), journal_(journal) {}

  std::optional<base::Bytes> run(const std::string& path,
                                 const std::vector<std::string>& arguments) override {
    journal_.add(path);
    return launcher_.run(path, arguments);
  }

 private:
  ports::ProgramLauncher& launcher_;
  fakes::Journal& journal_;
};

/// An Apple M2 Pro with 6 efficiency cores, 8 performance cores and a GPU of 19.
struct TitleFixture {
  fakes::FakeSystemControls controls;
  fakes::FakeAcceleratorRegistry accelerators;
  fakes::FakeProgramLauncher launcher;
  ReportReader propertyLists;

  TitleFixture() {
    controls.setText("machdep.cpu.brand_string", "Apple M2 Pro");
    controls.setInteger("hw.perflevel0.logicalcpu", 8);
    controls.setInteger("hw.perflevel1.logicalcpu", 6);
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
  EXPECT_EQ(title->numberOfECore(), 6);
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

TEST(ModuleModelMainTitle, AKernelWithoutPerformanceLevelOneHasFourEfficiencyCores) {
  TitleFixture f;
  fakes::FakeSystemControls one;
  one.setText("machdep.cpu.brand_string", "Apple M5");
  one.setInteger("hw.perflevel0.logicalcpu", 10);
  const auto title =
      ModuleModelMainTitle::create({one, f.accelerators, f.launcher, f.propertyLists});
  EXPECT_EQ(title->numberOfECore(), 4);
  EXPECT_EQ(title->numberOfPCore(), 10);
}

TEST(ModuleModelMainTitle, AKernelWithoutPerformanceLevelZeroHasFourPerformanceCores) {
  TitleFixture f;
  fakes::FakeSystemControls one;
  one.setText("machdep.cpu.brand_string", "Apple M5");
  one.setInteger("hw.perflevel1.logicalcpu", 10);
  const auto title =
      ModuleModelMainTitle::create({one, f.accelerators, f.launcher, f.propertyLists});
  EXPECT_EQ(title->numberOfECore(), 10);
  EXPECT_EQ(title->numberOfPCore(), 4);
}

TEST(ModuleModelMainTitle, NoCoresOfAKindAreNoCores) {
  TitleFixture f;
  f.controls.setInteger("hw.perflevel1.logicalcpu", 0);
  EXPECT_EQ(f.create()->numberOfECore(), 0);
}

TEST(ModuleModelMainTitle, ReadsChipGpuCoresOfEachKindAndTheGPUsCoresInThisOrder) {
  TitleFixture f;
  fakes::Journal journal;
  const JournaledControls controls(f.controls, journal);
  JournaledAccelerators accelerators(f.accelerators, journal);
  JournaledLauncher launcher(f.launcher, journal);
  ModuleModelMainTitle::create({controls, accelerators, launcher, f.propertyLists});
  EXPECT_EQ(journal.take(),
            (std::vector<std::string>{"machdep.cpu.brand_string", "IOAccelerator",
                                      "hw.perflevel1.logicalcpu", "hw.perflevel0.logicalcpu",
                                      "/usr/sbin/system_profiler"}));
}

TEST(ModuleModelMainTitle, EverythingIsReadOnce) {
  TitleFixture f;
  const auto title = f.create();
  EXPECT_EQ(f.launcher.takeCommands(), std::vector<std::string>{kProfiler});
  f.controls.setText("machdep.cpu.brand_string", "Apple M9");
  f.controls.setInteger("hw.perflevel0.logicalcpu", 99);
  f.controls.setInteger("hw.perflevel1.logicalcpu", 99);
  f.propertyLists.setCores("99");
  f.accelerators.clear();
  f.accelerators.takeCalls();
  EXPECT_EQ(title->appleSiliconName(), "Apple M2 Pro");
  EXPECT_EQ(title->gpuName(), "Apple M2 Pro GPU");
  EXPECT_EQ(title->numberOfECore(), 6);
  EXPECT_EQ(title->numberOfPCore(), 8);
  EXPECT_EQ(title->numberOfGPUCore(), 19);
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
