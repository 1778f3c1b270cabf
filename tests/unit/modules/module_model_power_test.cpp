// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_power.h"

#include <limits>

#include "fakes/fake_sample_reader.h"

namespace pallimo::modules {
namespace {

using base::PropertyList;
using Values = std::vector<double>;
using Labels = std::vector<std::string_view>;

const Labels kInitialLabels = {"30", "25", "20", "15", "10", "5", "0"};

struct PowerFixture {
  base::NotificationCentre notifications;
  std::shared_ptr<fakes::FakeSampleReader> reader = std::make_shared<fakes::FakeSampleReader>();
  std::shared_ptr<ModuleModelPower> model = ModuleModelPower::create(notifications, reader);
  int changes = 0;
  base::Subscription observation = model->observe([this] { ++changes; });

  void ingest(sampling::PowerValues values) {
    reader->setPowerValues(std::move(values));
    model->ingestSample();
  }
  void ingestPackage(double watts) { ingest({{"combined_power", PropertyList(watts * 1000)}}); }

  Labels labels() const {
    const auto labels = model->snapshot()->axisLabels;
    return {labels.begin(), labels.end()};
  }
};

/// Five readings that differ; with a period of 500 ms they are 1, 2, 3, 4 and 5 W.
sampling::PowerValues distinctReadings() {
  return {{"cpu_energy", PropertyList(500.0)},
          {"dram_energy", PropertyList(1000.0)},
          {"ane_energy", PropertyList(1500.0)},
          {"gpu_energy", PropertyList(2000.0)},
          {"combined_power", PropertyList(5000.0)}};
}

void expectFigures(const ModuleModelPower::Figures& figures, const Values& cpuDramAneGpuPkg) {
  EXPECT_EQ((Values{figures.CPUEnergy, figures.DRAMEnergy, figures.ANEEnergy, figures.GPUEnergy,
                    figures.PKGEnergy}),
            cpuDramAneGpuPkg);
}

/// The newest values of the five histories: CPU, DRAM, ANE, GPU, PKG.
std::vector<Values> histories(const ModuleModelPower::Snapshot& s) {
  return {s.historicCPU.newest, s.historicDRAM.newest, s.historicANE.newest, s.historicGPU.newest,
          s.historicPKG.newest};
}

TEST(ModuleModelPower, ShowsNothingBeforeTheFirstSample) {
  PowerFixture f;
  const auto snapshot = f.model->snapshot();
  expectFigures(*snapshot, {0, 0, 0, 0, 0});
  EXPECT_EQ(histories(*snapshot), std::vector<Values>(5));
}

TEST(ModuleModelPower, ShowsThirtyWattsWithoutAMaximumBeforeTheFirstSample) {
  PowerFixture f;
  EXPECT_EQ(f.labels(), kInitialLabels);
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 0);
}

TEST(ModuleModelPower, EnergiesOverThePeriodAreWattsAndThePackageIsMilliwatts) {
  PowerFixture f;
  f.ingest(distinctReadings());
  expectFigures(*f.model->snapshot(), {1, 2, 3, 4, 5});
}

TEST(ModuleModelPower, ThePeriodDividesEveryEnergyButNotThePackage) {
  PowerFixture f;
  f.reader->setMsSampling(250);
  f.ingest(distinctReadings());
  expectFigures(*f.model->snapshot(), {2, 4, 6, 8, 5});
}

TEST(ModuleModelPower, ThePeriodIsReadAtEverySample) {
  PowerFixture f;
  f.ingest(distinctReadings());
  f.reader->setMsSampling(100);
  f.ingest(distinctReadings());
  EXPECT_EQ(f.model->snapshot()->historicCPU.newest, (Values{5, 1}));
}

TEST(ModuleModelPower, IntegersCountAsNumbers) {
  PowerFixture f;
  f.ingest({{"cpu_energy", PropertyList(std::int64_t{750})},
            {"combined_power", PropertyList(std::uint64_t{2500})}});
  EXPECT_EQ(f.model->figures().CPUEnergy, 1.5);
  EXPECT_EQ(f.model->figures().PKGEnergy, 2.5);
}

TEST(ModuleModelPower, ReadingsThatAreAbsentCountAsNothing) {
  PowerFixture f;
  f.ingest(distinctReadings());
  f.ingest({});
  expectFigures(*f.model->snapshot(), {0, 0, 0, 0, 0});
}

TEST(ModuleModelPower, EachAbsentReadingCountsAsNothingAlone) {
  const std::vector<std::pair<std::string, Values>> cases = {{"cpu_energy", {0, 2, 3, 4, 5}},
                                                             {"dram_energy", {1, 0, 3, 4, 5}},
                                                             {"ane_energy", {1, 2, 0, 4, 5}},
                                                             {"gpu_energy", {1, 2, 3, 0, 5}},
                                                             {"combined_power", {1, 2, 3, 4, 0}}};
  for (const auto& [key, expected] : cases) {
    PowerFixture f;
    auto readings = distinctReadings();
    readings.erase(key);
    f.ingest(readings);
    expectFigures(*f.model->snapshot(), expected);
  }
}

TEST(ModuleModelPower, ReadingsThatAreNoNumbersCountAsNothing) {
  PowerFixture f;
  f.ingest({{"cpu_energy", PropertyList(std::string("500"))},
            {"dram_energy", PropertyList(true)},
            {"ane_energy", PropertyList(base::PropertyListArray{})},
            {"gpu_energy", PropertyList(base::Bytes{1})},
            {"combined_power", PropertyList()}});
  expectFigures(*f.model->snapshot(), {0, 0, 0, 0, 0});
}

TEST(ModuleModelPower, WithoutAnEngineEveryReadingIsNothing) {
  PowerFixture f;
  f.ingest(distinctReadings());
  f.reader.reset();
  f.model->ingestSample();
  expectFigures(*f.model->snapshot(), {0, 0, 0, 0, 0});
  EXPECT_EQ(f.model->snapshot()->historicCPU.newest, (Values{0, 1}));
}

TEST(ModuleModelPower, EachReadingEntersItsOwnHistoryTheNewestFirst) {
  PowerFixture f;
  f.ingest(distinctReadings());
  f.reader->setMsSampling(250);
  f.ingest(distinctReadings());
  EXPECT_EQ(histories(*f.model->snapshot()),
            (std::vector<Values>{{2, 1}, {4, 2}, {6, 3}, {8, 4}, {5, 5}}));
}

TEST(ModuleModelPower, EveryHistoryButTheNeuralEnginesKeepsThreeHundredAndFiftyValues) {
  PowerFixture f;
  for (int i = 0; i < 351; ++i) f.ingest(distinctReadings());
  const auto snapshot = f.model->snapshot();
  EXPECT_EQ(snapshot->historicCPU.length, 350u);
  EXPECT_EQ(snapshot->historicDRAM.length, 350u);
  EXPECT_EQ(snapshot->historicPKG.length, 350u);
  EXPECT_EQ(snapshot->historicGPU.length, 350u);
  EXPECT_EQ(snapshot->historicANE.length, 351u);
  EXPECT_EQ(snapshot->historicANE.newest.size(), 351u);
}

TEST(ModuleModelPower, TheNeuralEnginesHistoryGrowsUntilItIsCleared) {
  PowerFixture f;
  for (int i = 0; i < 5000; ++i) f.model->ingestSample();
  EXPECT_EQ(f.model->snapshot()->historicANE.length, 5000u);
  f.model->clearData();
  EXPECT_EQ(f.model->snapshot()->historicANE.length, 0u);
}

TEST(ModuleModelPower, AClearedNeuralEnginesHistoryIsStillUnbounded) {
  PowerFixture f;
  f.model->clearData();
  for (int i = 0; i < 351; ++i) f.model->ingestSample();
  EXPECT_EQ(f.model->snapshot()->historicANE.length, 351u);
  EXPECT_EQ(f.model->snapshot()->historicCPU.length, 350u);
}

TEST(ModuleModelPower, ThePackageAloneDecidesTheAxis) {
  PowerFixture f;
  f.ingest({{"cpu_energy", PropertyList(500'000.0)}, {"combined_power", PropertyList(35'000.0)}});
  EXPECT_EQ(f.labels(), (Labels{"40", "30", "20", "10", "0"}));
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 40);
}

TEST(ModuleModelPower, ExactlyTwentyWattsFitTheAxisOfTwenty) {
  PowerFixture f;
  f.ingestPackage(20);
  EXPECT_EQ(f.labels(), (Labels{"20", "15", "10", "5", "0"}));
  f.ingestPackage(20.0001);
  EXPECT_EQ(f.labels(), kInitialLabels);
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 30);
}

TEST(ModuleModelPower, TheLargestOfTheHistoryDecidesNotTheNewest) {
  PowerFixture f;
  f.ingestPackage(85);
  f.ingestPackage(3);
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 90);
}

TEST(ModuleModelPower, ASampleWithoutPackagePowerLeavesTheAxisToTheRest) {
  PowerFixture f;
  f.ingestPackage(85);
  f.ingest({{"cpu_energy", PropertyList(500.0)}});
  EXPECT_EQ(f.model->figures().PKGEnergy, 0);
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 90);
}

TEST(ModuleModelPower, TheAxisComesDownWhenTheLargestLeavesTheHistory) {
  PowerFixture f;
  f.ingestPackage(85);
  for (int i = 0; i < 349; ++i) f.ingestPackage(3);
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 90);
  f.ingestPackage(3);
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 20);
}

TEST(ModuleModelPower, APackagePowerThatIsNotANumberTakesTheHighestAxis) {
  PowerFixture f;
  f.ingestPackage(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 800);
}

TEST(ModuleModelPower, InfinitePackagePowerTakesTheHighestAxis) {
  PowerFixture f;
  f.ingestPackage(std::numeric_limits<double>::infinity());
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 800);
}

TEST(ModuleModelPower, ClearingEmptiesFiguresAndHistories) {
  PowerFixture f;
  f.ingest(distinctReadings());
  f.model->clearData();
  const auto snapshot = f.model->snapshot();
  expectFigures(*snapshot, {0, 0, 0, 0, 0});
  EXPECT_EQ(histories(*snapshot), std::vector<Values>(5));
  EXPECT_EQ(snapshot->historicCPU.length, 0u);
}

TEST(ModuleModelPower, ClearingKeepsTheAxisUntilTheNextSample) {
  PowerFixture f;
  f.ingestPackage(85);
  f.model->clearData();
  EXPECT_EQ(f.labels(), (Labels{"90", "75", "60", "45", "30", "15", "0"}));
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 90);
  f.ingestPackage(3);
  EXPECT_EQ(f.labels(), (Labels{"20", "15", "10", "5", "0"}));
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 20);
}

TEST(ModuleModelPower, ClearingBeforeTheFirstSampleKeepsTheInitialAxis) {
  PowerFixture f;
  f.model->clearData();
  EXPECT_EQ(f.labels(), kInitialLabels);
  EXPECT_EQ(f.model->snapshot()->axisMaxValue, 0);
}

TEST(ModuleModelPower, ClearingPublishesOnceAfterTheValuesAreGone) {
  PowerFixture f;
  f.ingest(distinctReadings());
  double seen = -1;
  const auto observation = f.model->observe([&] { seen = f.model->snapshot()->CPUEnergy; });
  f.model->clearData();
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(seen, 0);
}

TEST(ModuleModelPower, IngestingPublishesNothing) {
  PowerFixture f;
  f.ingest(distinctReadings());
  EXPECT_EQ(f.changes, 0);
}

TEST(ModuleModelPower, UpdateViewPublishesAndChangesNothing) {
  PowerFixture f;
  f.ingest(distinctReadings());
  const auto before = f.model->snapshot();
  f.model->updateView();
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(f.model->snapshot(), before);
}

TEST(ModuleModelPower, FollowsClearData) {
  PowerFixture f;
  f.ingest(distinctReadings());
  f.notifications.post("ClearData");
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(f.model->snapshot()->historicPKG.length, 0u);
}

TEST(ModuleModelPower, FollowsUpdateView) {
  PowerFixture f;
  f.ingest(distinctReadings());
  f.notifications.post("UpdateView");
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(f.model->snapshot()->historicPKG.length, 1u);
}

TEST(ModuleModelPower, FollowingNoticesDoesNotKeepTheModelAlive) {
  PowerFixture f;
  const std::weak_ptr<ModuleModelPower> weak = f.model;
  f.model.reset();
  EXPECT_TRUE(weak.expired());
  f.notifications.post("ClearData");
  f.notifications.post("UpdateView");
  EXPECT_EQ(f.changes, 0);
}

TEST(ModuleModelPower, ASnapshotDoesNotChangeWithTheModel) {
  PowerFixture f;
  f.ingest(distinctReadings());
  const auto snapshot = f.model->snapshot();
  f.model->clearData();
  EXPECT_EQ(snapshot->CPUEnergy, 1);
  EXPECT_EQ(snapshot->historicCPU.newest, Values{1});
}

TEST(ModuleModelPower, ASnapshotIsSharedUntilTheNextChange) {
  PowerFixture f;
  const auto first = f.model->snapshot();
  EXPECT_EQ(f.model->snapshot(), first);
  f.model->ingestSample();
  const auto second = f.model->snapshot();
  EXPECT_NE(second, first);
  f.model->clearData();
  EXPECT_NE(f.model->snapshot(), second);
}

}  // namespace
}  // namespace pallimo::modules
