// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/sample_rows.h"

#include <cmath>

#include "fakes/fake_accelerator_registry.h"
#include "fakes/fake_hid_sensors.h"
#include "fakes/fake_processor_ticks.h"
#include "fakes/fake_sample_reader.h"
#include "fakes/fake_smc_device.h"
#include "fakes/fake_system_controls.h"
#include "fakes/manual_clock.h"
#include "logging/log_file_data.h"

namespace pallimo::logging {
namespace {

using base::PropertyList;
using std::chrono::milliseconds;
using Values = std::vector<double>;

/// A machine with HID sensors, whose processors have counted since boot.
struct Machine {
  fakes::FakeSystemControls controls;
  fakes::FakeSmcDevice smc;
  fakes::FakeHidSensors hid;
  fakes::FakeProcessorTicks ticks;
  fakes::FakeAcceleratorRegistry accelerators;

  Machine() {
    controls.setText("hw.model", "MacBookAir10,1");
    hid.add("Te0i", 41.5);
    hid.add("Tp0i", 62.75);
    hid.add("Tg0i", 44.25);
    ticks.set({{0, 0, 100, 0}, {50, 0, 50, 0}, {100, 0, 0, 0}, {100, 0, 0, 0}});
    accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M1", 37));
  }
};

/// The four models over one sample, and rows of them.
struct RowsFixture {
  Machine machine;
  base::NotificationCentre notifications;
  fakes::ManualClock clock;
  std::shared_ptr<fakes::FakeSampleReader> reader = std::make_shared<fakes::FakeSampleReader>();
  std::shared_ptr<modules::ModuleModelPower> power =
      modules::ModuleModelPower::create(notifications, reader);
  std::shared_ptr<modules::ModuleModelFrequency> frequency =
      modules::ModuleModelFrequency::create(notifications, reader);
  std::shared_ptr<modules::ModuleModelTemperature> temperature =
      modules::ModuleModelTemperature::create(notifications,
                                              {machine.controls, machine.smc, machine.hid});
  std::shared_ptr<modules::ModuleModelUtilization> utilization =
      modules::ModuleModelUtilization::create(notifications, reader,
                                              {machine.ticks, machine.accelerators});
  SampleRows rows{clock, {*power, *frequency, *temperature, *utilization}};
  std::vector<LogRow> received;

  RowsFixture() {
    rows.addReceiver([this](const LogRow& row) { received.push_back(row); });
    reader->setPowerValues({{"cpu_energy", PropertyList(500.0)},
                            {"dram_energy", PropertyList(1000.0)},
                            {"ane_energy", PropertyList(1500.0)},
                            {"gpu_energy", PropertyList(2000.0)},
                            {"combined_power", PropertyList(5000.0)}});
    reader->setClusterFrequencies({{"E-Cluster", 1500}, {"P-Cluster", 2250}});
    reader->setGPUFrequency({{"freq_hz", PropertyList(750.0)}});
    reader->setClusterCPUs({{"E-Cluster", {0, 1}}, {"P-Cluster", {2, 3}}});
  }

  void ingest() {
    power->ingestSample();
    frequency->ingestSample();
    temperature->ingestSample();
    utilization->ingestSample();
  }

  LogRow append() {
    rows.appendRow();
    return received.back();
  }
};

TEST(SampleRows, TakesEachPowerFromItsOwnFigure) {
  RowsFixture f;
  f.ingest();
  const LogRow row = f.append();
  EXPECT_EQ((Values{row.cpuPower, row.dramPower, row.anePower, row.gpuPower, row.pkgPower}),
            (Values{1, 2, 3, 4, 5}));
}

TEST(SampleRows, TakesEachFrequencyInMegahertz) {
  RowsFixture f;
  f.ingest();
  const LogRow row = f.append();
  EXPECT_EQ((Values{row.cpuECoreFrequency, row.cpuPCoreFrequency, row.gpuFrequency}),
            (Values{1500, 2250, 750}));
}

TEST(SampleRows, AFrequencyIsRoundedOnlyWhenItIsWritten) {
  RowsFixture f;
  f.reader->setClusterFrequencies({{"E-Cluster", 1234.56}, {"P-Cluster", 0}});
  f.ingest();
  const LogRow row = f.append();
  EXPECT_DOUBLE_EQ(row.cpuECoreFrequency, 1234.56);
  EXPECT_EQ(formatRow(row, row.time).cpuECoreFrequency, "1235");
}

TEST(SampleRows, TakesEachTemperatureAsItIs) {
  RowsFixture f;
  f.ingest();
  const LogRow row = f.append();
  EXPECT_EQ((Values{row.cpuMinTmp, row.cpuAvgTmp, row.cpuMaxTmp, row.gpuAvgTmp}),
            (Values{41.5, 52.125, 62.75, 44.25}));
}

TEST(SampleRows, TakesEachUtilizationInPercent) {
  RowsFixture f;
  f.ingest();
  const LogRow row = f.append();
  EXPECT_EQ(
      (Values{row.cpuUtilization, row.cpuEUtilization, row.cpuPUtilization, row.gpuUtilization}),
      (Values{62.5, 25, 100, 37}));
}

TEST(SampleRows, HalfAProcessorIsWrittenAsFiftyPercent) {
  RowsFixture f;
  f.machine.ticks.set({{50, 0, 50, 0}});
  f.ingest();
  const LogRow row = f.append();
  EXPECT_EQ(formatRow(row, row.time).cpuUtilization, "50.000");
}

TEST(SampleRows, WhatIsNotANumberStaysSo) {
  RowsFixture f;
  f.machine.hid.clear();
  f.machine.ticks.fail();
  f.ingest();
  const LogRow row = f.append();
  EXPECT_EQ(row.cpuMinTmp, -1);
  EXPECT_EQ(row.cpuMaxTmp, -1);
  EXPECT_TRUE(std::isnan(row.cpuAvgTmp));
  EXPECT_TRUE(std::isnan(row.gpuAvgTmp));
  EXPECT_TRUE(std::isnan(row.cpuUtilization));
  EXPECT_TRUE(std::isnan(row.cpuEUtilization));
  EXPECT_TRUE(std::isnan(row.cpuPUtilization));
}

TEST(SampleRows, TakesTheWallClocksTime) {
  RowsFixture f;
  f.clock.set(std::chrono::system_clock::from_time_t(1'709'647'353));
  f.clock.advance(milliseconds(250));
  EXPECT_EQ(f.append().time,
            std::chrono::system_clock::from_time_t(1'709'647'353) + milliseconds(250));
}

TEST(SampleRows, EachStepIsARowOfItsOwn) {
  RowsFixture f;
  f.ingest();
  f.rows.appendRow();
  f.reader->setMsSampling(250);
  f.ingest();
  f.rows.appendRow();
  ASSERT_EQ(f.received.size(), 2u);
  EXPECT_EQ(f.received[0].cpuPower, 1);
  EXPECT_EQ(f.received[1].cpuPower, 2);
}

TEST(SampleRows, EveryReceiverGetsTheSameRowInTheOrderOfAdding) {
  RowsFixture f;
  std::vector<int> order;
  SampleRows rows(f.clock, {*f.power, *f.frequency, *f.temperature, *f.utilization});
  std::vector<double> figures;
  rows.addReceiver([&](const LogRow& row) {
    order.push_back(1);
    figures.push_back(row.pkgPower);
    f.ingest();  // a change in between belongs to the next row
  });
  rows.addReceiver([&](const LogRow& row) {
    order.push_back(2);
    figures.push_back(row.pkgPower);
  });
  rows.appendRow();
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
  EXPECT_EQ(figures, (Values{0, 0}));
}

TEST(SampleRows, SayWhetherTheDriverToldItsFigure) {
  RowsFixture f;
  std::vector<bool> told;
  f.rows.addReceiver([&](const SampleRow& row) { told.push_back(row.isGPUTold); });
  f.rows.appendRow();  // before the first sample
  f.ingest();
  f.rows.appendRow();
  f.machine.accelerators.clear();
  f.ingest();
  f.rows.appendRow();
  EXPECT_EQ(told, (std::vector<bool>{false, true, false}));
}

TEST(SampleRows, AClearedModelGivesZeroes) {
  RowsFixture f;
  f.ingest();
  f.notifications.post("ClearData");
  const LogRow row = f.append();
  EXPECT_EQ((Values{row.pkgPower, row.cpuECoreFrequency, row.cpuMaxTmp, row.cpuUtilization}),
            Values(4, 0));
}

}  // namespace
}  // namespace pallimo::logging
