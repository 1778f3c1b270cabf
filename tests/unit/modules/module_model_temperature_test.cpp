// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_temperature.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "fakes/fake_hid_sensors.h"
#include "fakes/fake_smc_device.h"
#include "fakes/fake_system_controls.h"

namespace pallimo::modules {
namespace {

using Values = std::vector<double>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr const char* kMachineWithHID = "MacBookAir10,1";
constexpr const char* kMachineWithSMC = "Mac14,9";

/// The model of a machine whose sensors the test reads out. At first it has none.
struct TemperatureFixture {
  base::NotificationCentre notifications;
  fakes::FakeSystemControls controls;
  fakes::FakeSmcDevice smc;
  fakes::FakeHidSensors hid;
  std::shared_ptr<ModuleModelTemperature> model;
  int changes = 0;
  base::Subscription observation;

  explicit TemperatureFixture(const char* machine = kMachineWithHID) {
    controls.setText("hw.model", machine);
    controls.setText("machdep.cpu.brand_string", "Apple M1");
    create();
  }

  void create() {
    model = ModuleModelTemperature::create(notifications, {controls, smc, hid});
    observation = model->observe([this] { ++changes; });
  }

  /// A sample of these sensors, for the CPU at most nine.
  void ingest(const Values& cpu, const Values& gpu) {
    hid.clear();
    for (std::size_t i = 0; i < cpu.size(); ++i) hid.add("Te" + std::to_string(i) + "i", cpu[i]);
    for (std::size_t i = 0; i < gpu.size(); ++i) hid.add("Tg" + std::to_string(i) + "i", gpu[i]);
    model->ingestSample();
  }
  void ingestGPU(double celsius) { ingest({50}, {celsius}); }
  /// A sample of that many sensors of each kind, none of which has anything to say.
  void ingestSilent(int count) {
    hid.clear();
    for (int i = 0; i < count; ++i) hid.add("Te" + std::to_string(i) + "i", std::nullopt);
    for (int i = 0; i < count; ++i) hid.add("Tg" + std::to_string(i) + "i", std::nullopt);
    model->ingestSample();
  }

  ModuleModelTemperature::Figures figures() const { return model->figures(); }
};

/// Sensors before whose reads something else happens.
struct InterruptedSensors final : ports::HidSensors {
  explicit InterruptedSensors(ports::HidSensors& sensors) : sensors_(sensors) {}

  std::unique_ptr<ports::HidClient> createClient() override {
    if (beforeEachRead) beforeEachRead();
    return sensors_.createClient();
  }

  std::function<void()> beforeEachRead;

 private:
  ports::HidSensors& sensors_;
};

void expectFigures(const ModuleModelTemperature::Figures& figures, const Values& minMaxAvgGPU) {
  EXPECT_EQ((Values{figures.CPUMin, figures.CPUMax, figures.CPUAvg, figures.GPUAvg}), minMaxAvgGPU);
}

/// The newest values of the four histories: CPU minimum, maximum, average, GPU average.
std::vector<Values> histories(const ModuleModelTemperature::Snapshot& s) {
  return {s.historicCPUMin.newest, s.historicCPUMax.newest, s.historicCPUAvg.newest,
          s.historicGPUAvg.newest};
}

TEST(ModuleModelTemperature, ShowsNothingBeforeTheFirstSample) {
  TemperatureFixture f;
  expectFigures(f.figures(), {0, 0, 0, 0});
  expectFigures(*f.model->snapshot(), {0, 0, 0, 0});
  EXPECT_EQ(histories(*f.model->snapshot()), std::vector<Values>(4));
}

TEST(ModuleModelTemperature, TheSensorsBecomeMinimumMaximumAndAverages) {
  TemperatureFixture f;
  f.ingest({50, 41, 62, 47}, {30, 40});
  expectFigures(*f.model->snapshot(), {41, 62, 50, 35});
}

TEST(ModuleModelTemperature, TheCoolestAndTheHottestMayStandAnywhere) {
  TemperatureFixture f;
  f.ingest({41, 50, 62}, {40});
  expectFigures(f.figures(), {41, 62, 51, 40});
  f.ingest({62, 50, 41}, {40});
  expectFigures(f.figures(), {41, 62, 51, 40});
}

TEST(ModuleModelTemperature, OneSensorIsAllFigures) {
  TemperatureFixture f;
  f.ingest({48.5}, {40.25});
  expectFigures(f.figures(), {48.5, 48.5, 48.5, 40.25});
}

TEST(ModuleModelTemperature, ACPUWithoutSensorsReadsMinusOneAndNotANumber) {
  TemperatureFixture f;
  f.ingest({}, {40});
  const auto snapshot = f.model->snapshot();
  EXPECT_EQ(snapshot->CPUMin, -1);
  EXPECT_EQ(snapshot->CPUMax, -1);
  EXPECT_TRUE(std::isnan(snapshot->CPUAvg));
  EXPECT_EQ(snapshot->GPUAvg, 40);
  EXPECT_EQ(snapshot->historicCPUMin.newest, Values{-1});
  EXPECT_EQ(snapshot->historicCPUMax.newest, Values{-1});
  ASSERT_EQ(snapshot->historicCPUAvg.length, 1u);
  EXPECT_TRUE(std::isnan(snapshot->historicCPUAvg.newest[0]));
}

TEST(ModuleModelTemperature, AGPUWithoutSensorsIsNotANumber) {
  TemperatureFixture f;
  f.ingest({50}, {});
  EXPECT_TRUE(std::isnan(f.figures().GPUAvg));
  ASSERT_EQ(f.model->snapshot()->historicGPUAvg.length, 1u);
  EXPECT_TRUE(std::isnan(f.model->snapshot()->historicGPUAvg.newest[0]));
}

TEST(ModuleModelTemperature, AHIDSensorWithoutAnEventCountsAsMinusOne) {
  TemperatureFixture f;
  f.hid.add("Te0i", 51.0);
  f.hid.add("Te1i", std::nullopt);
  f.hid.add("Tg0i", 41.0);
  f.hid.add("Tg1i", std::nullopt);
  f.model->ingestSample();
  expectFigures(f.figures(), {-1, 51, 25, 20});
}

TEST(ModuleModelTemperature, HIDSensorsThatAreAllSilentReadMinusOneThroughout) {
  TemperatureFixture f;
  f.ingestSilent(2);
  expectFigures(f.figures(), {-1, -1, -1, -1});
}

TEST(ModuleModelTemperature, AnAverageBetweenFiveAndTenDegreesIsHeldAtThePreviousSamples) {
  TemperatureFixture f;
  f.ingestGPU(45);
  f.ingestGPU(7);
  EXPECT_EQ(f.figures().GPUAvg, 45);
  EXPECT_EQ(f.model->snapshot()->historicGPUAvg.newest, (Values{45, 45}));
}

TEST(ModuleModelTemperature, ItIsHeldAsLongAsItLasts) {
  TemperatureFixture f;
  for (const double celsius : {45.0, 7.0, 9.99, 5.01, 46.0}) f.ingestGPU(celsius);
  EXPECT_EQ(f.model->snapshot()->historicGPUAvg.newest, (Values{46, 45, 45, 45, 45}));
}

TEST(ModuleModelTemperature, FiveAndTenDegreesThemselvesAreKept) {
  TemperatureFixture f;
  for (const double celsius : {45.0, 5.0, 10.0, 4.99, 10.01}) f.ingestGPU(celsius);
  EXPECT_EQ(f.model->snapshot()->historicGPUAvg.newest, (Values{10.01, 4.99, 10, 5, 45}));
}

TEST(ModuleModelTemperature, TheAverageIsJudgedAndNotTheSensors) {
  TemperatureFixture f;
  f.ingest({50}, {45});
  f.ingest({50}, {2, 12});
  EXPECT_EQ(f.figures().GPUAvg, 45);
  f.ingest({50}, {7, 33});
  EXPECT_EQ(f.figures().GPUAvg, 20);
}

TEST(ModuleModelTemperature, OnTheFirstSampleSevenDegreesAreKept) {
  TemperatureFixture f;
  f.ingestGPU(7);
  EXPECT_EQ(f.figures().GPUAvg, 7);
  EXPECT_EQ(f.model->snapshot()->historicGPUAvg.newest, Values{7});
}

TEST(ModuleModelTemperature, AfterClearingSevenDegreesAreKept) {
  TemperatureFixture f;
  f.ingestGPU(45);
  f.model->clearData();
  f.ingestGPU(7);
  EXPECT_EQ(f.figures().GPUAvg, 7);
}

TEST(ModuleModelTemperature, HistoriesThatAreEmptiedDuringAReadLendNoFigure) {
  TemperatureFixture f;
  InterruptedSensors sensors(f.hid);
  f.model = ModuleModelTemperature::create(f.notifications, {f.controls, f.smc, sensors});
  f.ingestGPU(45);
  sensors.beforeEachRead = [&f] { f.model->clearData(); };
  f.ingestGPU(7);
  EXPECT_EQ(f.figures().GPUAvg, 7);
  EXPECT_EQ(f.model->snapshot()->historicGPUAvg.newest, Values{7});
}

TEST(ModuleModelTemperature, ThePreviousSamplesFigureIsHeldEvenIfItIsNotANumber) {
  TemperatureFixture f;
  f.ingest({50}, {});
  f.ingestGPU(7);
  EXPECT_TRUE(std::isnan(f.figures().GPUAvg));
}

TEST(ModuleModelTemperature, ThePreviousSamplesFigureIsHeldEvenIfItIsMinusOne) {
  TemperatureFixture f;
  f.ingestSilent(1);
  f.ingestGPU(7);
  EXPECT_EQ(f.figures().GPUAvg, -1);
  EXPECT_EQ(f.model->snapshot()->historicGPUAvg.newest, (Values{-1, -1}));
}

TEST(ModuleModelTemperature, TheCPUsFiguresAreNeverHeld) {
  TemperatureFixture f;
  f.ingest({50}, {45});
  f.ingest({7}, {45});
  expectFigures(f.figures(), {7, 7, 7, 45});
}

TEST(ModuleModelTemperature, ASensorThatIsNotANumberLeavesTheOthersTheirExtremes) {
  TemperatureFixture f;
  f.ingest({50, kNaN, 40}, {45});
  EXPECT_EQ(f.figures().CPUMin, 40);
  EXPECT_EQ(f.figures().CPUMax, 50);
  EXPECT_TRUE(std::isnan(f.figures().CPUAvg));
}

TEST(ModuleModelTemperature, TheHIDSensorsAreReadAfreshForTheGPU) {
  TemperatureFixture f;
  f.hid.takeCalls();
  f.ingest({50}, {45});
  const auto calls = f.hid.takeCalls();
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "client"), 2);
}

TEST(ModuleModelTemperature, TheGPUsFigureComesFromTheSecondReadAndTheCPUsFromTheFirst) {
  TemperatureFixture f;
  InterruptedSensors sensors(f.hid);
  f.model = ModuleModelTemperature::create(f.notifications, {f.controls, f.smc, sensors});
  double celsius = 0;
  sensors.beforeEachRead = [&] {
    celsius += 30;
    f.hid.clear();
    f.hid.add("Te0i", celsius);
    f.hid.add("Tg0i", celsius + 1);
  };
  f.model->ingestSample();
  expectFigures(f.figures(), {30, 30, 30, 61});
}

TEST(ModuleModelTemperature, OnTheSMCEachKindIsAPassOfItsOwnTheCPUsFirst) {
  TemperatureFixture f(kMachineWithSMC);
  f.smc.setFloat("Tp01", 50);
  f.smc.setFloat("Tp05", 60);
  f.smc.setFloat("Tg05", 40);
  f.create();
  f.smc.takeCalls();
  f.model->ingestSample();
  expectFigures(f.figures(), {50, 60, 55, 40});
  EXPECT_EQ(f.smc.takeCalls(), (std::vector<std::string>{"open", "read Tp01", "read Tp05", "close",
                                                         "open", "read Tg05", "close"}));
  EXPECT_TRUE(f.hid.takeCalls().empty());
}

TEST(ModuleModelTemperature, ALowReadingOfAnM2WithoutTe05IsZeroThroughout) {
  TemperatureFixture f(kMachineWithSMC);
  f.controls.setText("machdep.cpu.brand_string", "Apple M2");
  f.smc.setFloat("Tp01", 15);
  f.smc.setFloat("Tg05", 40);
  f.create();
  f.model->ingestSample();
  expectFigures(f.figures(), {0, 0, 0, 40});
}

TEST(ModuleModelTemperature, Te05StandsInForLowReadingsOfAnM4) {
  TemperatureFixture f(kMachineWithSMC);
  f.controls.setText("machdep.cpu.brand_string", "Apple M4 Pro");
  f.smc.setFloat("Te05", 40);
  f.smc.setFloat("Tp13", 15);
  f.smc.setFloat("Tp1F", 55);
  f.smc.setFloat("Tp01", 99);
  f.smc.setFloat("Tg05", 40);
  f.create();
  f.model->ingestSample();
  expectFigures(f.figures(), {40, 55, 45, 40});
}

TEST(ModuleModelTemperature, AnSMCWithoutKeysHasNoSensors) {
  TemperatureFixture f(kMachineWithSMC);
  f.model->ingestSample();
  EXPECT_EQ(f.figures().CPUMin, -1);
  EXPECT_EQ(f.figures().CPUMax, -1);
  EXPECT_TRUE(std::isnan(f.figures().CPUAvg));
  EXPECT_TRUE(std::isnan(f.figures().GPUAvg));
}

TEST(ModuleModelTemperature, TheHelpTextNamesTheSMC) {
  TemperatureFixture f(kMachineWithSMC);
  EXPECT_EQ(f.model->sensorTmp().sensorType(), "SMC");
  EXPECT_EQ(f.model->tooltipTest(), "Temperature in Degrees Celcius. Data from SMC");
}

TEST(ModuleModelTemperature, TheHelpTextNamesTheHIDService) {
  TemperatureFixture f(kMachineWithHID);
  EXPECT_EQ(f.model->sensorTmp().sensorType(), "PMU");
  EXPECT_EQ(f.model->tooltipTest(), "Temperature in Degrees Celcius. Data from IOHIDService");
}

TEST(ModuleModelTemperature, SamplesAndClearingLeaveSourceAndHelpText) {
  TemperatureFixture f(kMachineWithSMC);
  f.controls.setText("hw.model", kMachineWithHID);
  f.model->ingestSample();
  f.model->clearData();
  EXPECT_EQ(f.model->sensorTmp().sensorType(), "SMC");
  EXPECT_EQ(f.model->tooltipTest(), "Temperature in Degrees Celcius. Data from SMC");
}

TEST(ModuleModelTemperature, EachFigureEntersItsOwnHistoryTheNewestFirst) {
  TemperatureFixture f;
  f.ingest({40, 60}, {30});
  f.ingest({45, 75}, {35});
  EXPECT_EQ(histories(*f.model->snapshot()),
            (std::vector<Values>{{45, 40}, {75, 60}, {60, 50}, {35, 30}}));
}

TEST(ModuleModelTemperature, EveryHistoryKeepsThreeHundredAndFiftyValues) {
  TemperatureFixture f;
  f.ingest({99}, {99});
  f.ingest({40, 60}, {30});
  for (int i = 0; i < 349; ++i) f.model->ingestSample();
  const auto snapshot = f.model->snapshot();
  EXPECT_EQ(snapshot->historicCPUMin.length, 350u);
  EXPECT_EQ(snapshot->historicCPUMax.length, 350u);
  EXPECT_EQ(snapshot->historicCPUAvg.length, 350u);
  EXPECT_EQ(snapshot->historicGPUAvg.length, 350u);
  EXPECT_EQ(histories(*snapshot), (std::vector<Values>{Values(350, 40), Values(350, 60),
                                                       Values(350, 50), Values(350, 30)}));
}

TEST(ModuleModelTemperature, ClearingEmptiesFiguresAndHistoriesAndPublishesOnce) {
  TemperatureFixture f;
  f.ingest({40, 60}, {30});
  f.model->clearData();
  expectFigures(*f.model->snapshot(), {0, 0, 0, 0});
  EXPECT_EQ(histories(*f.model->snapshot()), std::vector<Values>(4));
  EXPECT_EQ(f.changes, 1);
}

TEST(ModuleModelTemperature, IngestingPublishesNothing) {
  TemperatureFixture f;
  f.ingest({40, 60}, {30});
  EXPECT_EQ(f.changes, 0);
}

TEST(ModuleModelTemperature, UpdateViewPublishesAndChangesNothing) {
  TemperatureFixture f;
  f.ingest({40, 60}, {30});
  const auto before = f.model->snapshot();
  f.model->updateView();
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(f.model->snapshot(), before);
}

TEST(ModuleModelTemperature, FollowsClearData) {
  TemperatureFixture f;
  f.ingest({40, 60}, {30});
  f.notifications.post("ClearData");
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(f.model->snapshot()->historicCPUAvg.length, 0u);
}

TEST(ModuleModelTemperature, FollowsUpdateView) {
  TemperatureFixture f;
  f.notifications.post("UpdateView");
  EXPECT_EQ(f.changes, 1);
}

TEST(ModuleModelTemperature, FollowingNoticesDoesNotKeepTheModelAlive) {
  TemperatureFixture f;
  const std::weak_ptr<ModuleModelTemperature> weak = f.model;
  f.model.reset();
  EXPECT_TRUE(weak.expired());
  f.notifications.post("ClearData");
  EXPECT_EQ(f.changes, 0);
}

TEST(ModuleModelTemperature, ASnapshotDoesNotChangeWithTheModel) {
  TemperatureFixture f;
  f.ingest({40, 60}, {30});
  const auto snapshot = f.model->snapshot();
  f.ingest({45, 75}, {35});
  expectFigures(*snapshot, {40, 60, 50, 30});
  EXPECT_EQ(snapshot->historicGPUAvg.newest, Values{30});
}

}  // namespace
}  // namespace pallimo::modules
