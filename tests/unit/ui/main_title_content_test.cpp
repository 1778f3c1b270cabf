// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/main_title_content.h"

#include <gtest/gtest.h>

#include <memory>
#include <span>

#include "fakes/fake_accelerator_registry.h"
#include "fakes/fake_program_launcher.h"
#include "fakes/fake_system_controls.h"

namespace pallimo::ui {
namespace {

/// A display report that names that many GPU cores, whatever it is read from.
class DisplayReport final : public ports::PropertyListReader {
 public:
  std::optional<base::PropertyList> readOnly(std::span<const std::uint8_t>,
                                             const ports::Wanted& /*wanted*/) const override {
    const base::PropertyList item({{"sppci_cores", base::PropertyList(std::string("19"))}});
    const base::PropertyList items(base::PropertyListArray{item});
    return base::PropertyList(base::PropertyListArray{base::PropertyList({{"_items", items}})});
  }
};

/// An Apple M2 Pro; its display report can be left out.
struct Machine {
  fakes::FakeSystemControls controls;
  fakes::FakeAcceleratorRegistry accelerators;
  fakes::FakeProgramLauncher launcher;
  DisplayReport report;

  Machine() {
    controls.setText("machdep.cpu.brand_string", "Apple M2 Pro");
    controls.setInteger("hw.perflevel0.logicalcpu", 8);
    controls.setInteger("hw.perflevel1.logicalcpu", 4);
    accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro GPU", 10));
  }
  void addReport() {
    launcher.setOutput("/usr/sbin/system_profiler -xml SPDisplaysDataType", "a report");
  }
  MainTitleContent title() {
    return mainTitleContent(
        *modules::ModuleModelMainTitle::create({controls, accelerators, launcher, report}));
  }
};

TEST(MainTitleContent, TheFirstLineIsTheChipAndItsCores) {
  Machine machine;
  machine.addReport();
  EXPECT_EQ(machine.title()[0],
            (MainTitleLine{{"Apple M2 Pro", FontRole::title2Bold},
                           {"(4 E-Cores + 8 P-Cores)", FontRole::title3Medium}}));
}

TEST(MainTitleContent, TheSecondLineIsTheGpuAndItsCores) {
  Machine machine;
  machine.addReport();
  EXPECT_EQ(machine.title()[1], (MainTitleLine{{"Apple M2 Pro GPU", FontRole::title3Bold},
                                               {"(19 GPU-Cores)", FontRole::headlineMedium}}));
}

TEST(MainTitleContent, AnUnknownNumberOfGpuCoresStandsThereAsItIs) {
  Machine machine;
  EXPECT_EQ(machine.title()[1].cores.text, "(-1 GPU-Cores)");
}

}  // namespace
}  // namespace pallimo::ui
