// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_utilization.h"

#include <cmath>

#include "fakes/fake_accelerator_registry.h"
#include "fakes/fake_processor_ticks.h"
#include "fakes/fake_sample_reader.h"

namespace pallimo::modules {
namespace {

using Values = std::vector<double>;
using Counts = fakes::FakeProcessorTicks::Counts;

const sampling::ClusterCPUs kTwoAndTwo = {{"E-Cluster", {0, 1}}, {"P-Cluster", {2, 3}}};

/// As many ticks as one processor counts in a second.
ports::ProcessorTickCounts second(std::uint32_t busyTicks) {
  return {busyTicks, 0, 100 - busyTicks, 0};
}

/// Apple's GPU whose driver publishes statistics of other things.
base::PropertyListDictionary gpuWithoutUtilisation() {
  auto properties = fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", 0);
  for (auto& [key, value] : properties) {
    if (key != "PerformanceStatistics") continue;
    value = base::PropertyList({{"In use system memory", base::PropertyList(std::int64_t{99})}});
  }
  return properties;
}

/// The model of four processors that have counted nothing yet and belong to no cluster.
struct UtilizationFixture {
  base::NotificationCentre notifications;
  fakes::FakeProcessorTicks ticks;
  fakes::FakeAcceleratorRegistry accelerators;
  std::shared_ptr<fakes::FakeSampleReader> reader = std::make_shared<fakes::FakeSampleReader>();
  std::shared_ptr<ModuleModelUtilization> model =
      ModuleModelUtilization::create(notifications, reader, {ticks, accelerators});
  int changes = 0;
  base::Subscription observation = model->observe([this] { ++changes; });

  UtilizationFixture() { ticks.set(Counts(4)); }

  /// A sample after the processors have counted that many ticks.
  void ingest(const Counts& counted) {
    ticks.advance(counted);
    model->ingestSample();
  }
  /// A sample a second later; each processor was busy for that percentage of it.
  void ingestSecond(std::uint32_t first, std::uint32_t other, std::uint32_t third,
                    std::uint32_t fourth) {
    ingest({second(first), second(other), second(third), second(fourth)});
  }
  void setGPU(std::int64_t percent) {
    accelerators.clear();
    accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", percent));
  }
  ModuleModelUtilization::Figures figures() const { return model->figures(); }
};

void expectFigures(const ModuleModelUtilization::Figures& figures, const Values& cpuEPGPU) {
  EXPECT_EQ((Values{figures.utilization, figures.eutilization, figures.putilization,
                    figures.utilizationGPU}),
            cpuEPGPU);
}

/// The newest values of the four histories: CPU, E cores, P cores, GPU.
std::vector<Values> histories(const ModuleModelUtilization::Snapshot& s) {
  return {s.historic.newest, s.historice.newest, s.historicp.newest, s.historicGPU.newest};
}

TEST(ModuleModelUtilization, ShowsNothingBeforeTheFirstSample) {
  UtilizationFixture f;
  expectFigures(f.figures(), {0, 0, 0, 0});
  expectFigures(*f.model->snapshot(), {0, 0, 0, 0});
  EXPECT_EQ(histories(*f.model->snapshot()), std::vector<Values>(4));
}

TEST(ModuleModelUtilization, EachFigureIsTheBusyPartOfItsOwn) {
  UtilizationFixture f;
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.setGPU(37);
  f.ingestSecond(0, 50, 50, 100);
  expectFigures(*f.model->snapshot(), {0.5, 0.25, 0.75, 0.37});
}

TEST(ModuleModelUtilization, UserSystemAndNiceTicksAreBusy) {
  UtilizationFixture f;
  f.ingest({{10, 20, 40, 30}, {10, 20, 40, 30}, {10, 20, 40, 30}, {10, 20, 40, 30}});
  EXPECT_EQ(f.figures().utilization, 0.6);
}

TEST(ModuleModelUtilization, TheFirstSampleMeasuresSinceBoot) {
  UtilizationFixture f;
  f.ticks.set({{250, 0, 750, 0}});
  f.model->ingestSample();
  EXPECT_EQ(f.figures().utilization, 0.25);
}

TEST(ModuleModelUtilization, EveryLaterSampleMeasuresFromTheOneBefore) {
  UtilizationFixture f;
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.ingestSecond(100, 100, 100, 100);
  f.ingestSecond(0, 0, 50, 50);
  expectFigures(f.figures(), {0.25, 0, 0.5, 0});
  f.ingestSecond(25, 25, 75, 75);
  expectFigures(f.figures(), {0.5, 0.25, 0.75, 0});
}

TEST(ModuleModelUtilization, AnotherNumberOfProcessorsMeasuresSinceBootOnce) {
  UtilizationFixture f;
  f.ingestSecond(0, 0, 0, 0);
  f.ticks.set({{900, 0, 100, 0}, {900, 0, 100, 0}});
  f.model->ingestSample();
  EXPECT_EQ(f.figures().utilization, 0.9);
  f.ingest({second(50), second(50)});
  EXPECT_EQ(f.figures().utilization, 0.5);
}

TEST(ModuleModelUtilization, AnotherNumberOfProcessorsMeasuresTheKindsSinceBootToo) {
  UtilizationFixture f;
  f.reader->setClusterCPUs({{"E-Cluster", {0}}, {"P-Cluster", {1}}});
  f.ingestSecond(0, 0, 0, 0);
  f.ticks.set({{900, 0, 100, 0}, {500, 0, 500, 0}});
  f.model->ingestSample();
  expectFigures(f.figures(), {0.7, 0.9, 0.5, 0});
}

TEST(ModuleModelUtilization, WithoutATickInBetweenTheCPUIsNotANumber) {
  UtilizationFixture f;
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.ingestSecond(50, 50, 50, 50);
  f.model->ingestSample();
  EXPECT_TRUE(std::isnan(f.figures().utilization));
  EXPECT_TRUE(std::isnan(f.figures().eutilization));
  EXPECT_TRUE(std::isnan(f.figures().putilization));
  EXPECT_TRUE(std::isnan(f.model->snapshot()->historic.newest.front()));
}

TEST(ModuleModelUtilization, TicksThatCanNotBeReadAreNotANumberAndTheNextSampleMeasuresSinceBoot) {
  UtilizationFixture f;
  f.ingestSecond(0, 0, 0, 0);
  f.ticks.fail();
  f.model->ingestSample();
  EXPECT_TRUE(std::isnan(f.figures().utilization));
  f.ticks.set(Counts(4, {50, 0, 150, 0}));
  f.model->ingestSample();
  EXPECT_EQ(f.figures().utilization, 0.25);
}

TEST(ModuleModelUtilization, ACounterThatTurnsNegativeIsTakenAsItComes) {
  UtilizationFixture f;
  f.ticks.set({{0, 0, 0x7FFFFFFF, 0}});
  f.model->ingestSample();
  f.ingest({{50, 0, 50, 0}});
  const double idle = 50 - 4294967296.0;
  EXPECT_EQ(f.figures().utilization, 1 - idle / (50 + idle));
  f.ingest({{50, 0, 50, 0}});
  EXPECT_EQ(f.figures().utilization, 0.5);
}

TEST(ModuleModelUtilization, TheClustersStandAtNothingUntilASampleNamesTheirProcessors) {
  UtilizationFixture f;
  f.ingestSecond(50, 50, 50, 50);
  expectFigures(f.figures(), {0.5, 0, 0, 0});
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.ingestSecond(0, 0, 100, 100);
  expectFigures(f.figures(), {0.5, 0, 1, 0});
  EXPECT_EQ(histories(*f.model->snapshot()),
            (std::vector<Values>{{0.5, 0.5}, {0, 0}, {1, 0}, {0, 0}}));
}

TEST(ModuleModelUtilization, TheClustersProcessorsAreNeverAskedForAgain) {
  UtilizationFixture f;
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.ingestSecond(0, 0, 100, 100);
  f.reader->setClusterCPUs({{"E-Cluster", {2, 3}}, {"P-Cluster", {0, 1}}});
  f.ingestSecond(0, 0, 100, 100);
  expectFigures(f.figures(), {0.5, 0, 1, 0});
  f.reader->setClusterCPUs({});
  f.ingestSecond(0, 0, 100, 100);
  expectFigures(f.figures(), {0.5, 0, 1, 0});
}

TEST(ModuleModelUtilization, ATableOfTwoEmptyClustersIsATable) {
  UtilizationFixture f;
  f.reader->setClusterCPUs({{"E-Cluster", {}}, {"P-Cluster", {}}});
  f.ingestSecond(50, 50, 50, 50);
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.ingestSecond(50, 50, 50, 50);
  EXPECT_TRUE(std::isnan(f.figures().eutilization));
  EXPECT_TRUE(std::isnan(f.figures().putilization));
}

TEST(ModuleModelUtilization, AKindThatTheMachineLacksIsNotANumber) {
  UtilizationFixture f;
  f.reader->setClusterCPUs({{"E-Cluster", {}}, {"P-Cluster", {0, 1, 2, 3}}});
  f.ingestSecond(25, 25, 25, 25);
  EXPECT_TRUE(std::isnan(f.figures().eutilization));
  EXPECT_TRUE(std::isnan(f.model->snapshot()->historice.newest.front()));
  EXPECT_EQ(f.figures().putilization, 0.25);
}

TEST(ModuleModelUtilization, AKindThatTheTableLacksIsWhollyBusy) {
  UtilizationFixture f;
  f.reader->setClusterCPUs({{"E-Cluster", {0, 1}}});
  f.ingestSecond(25, 25, 0, 0);
  expectFigures(f.figures(), {0.125, 0.25, 1, 0});

  UtilizationFixture other;
  other.reader->setClusterCPUs({{"P-Cluster", {0, 1}}});
  other.ingestSecond(25, 25, 0, 0);
  expectFigures(other.figures(), {0.125, 1, 0.25, 0});
}

TEST(ModuleModelUtilization, AListedProcessorThatTheKernelLacksChangesNoFraction) {
  UtilizationFixture f;
  f.reader->setClusterCPUs({{"E-Cluster", {0, 1, 12}}, {"P-Cluster", {2, 3, 13}}});
  f.ingestSecond(25, 25, 75, 75);
  expectFigures(f.figures(), {0.5, 0.25, 0.75, 0});
}

TEST(ModuleModelUtilization, AKindWhoseProcessorsTheKernelLacksIsNotANumber) {
  UtilizationFixture f;
  f.reader->setClusterCPUs({{"E-Cluster", {0, 1}}, {"P-Cluster", {12, 13}}});
  f.ingestSecond(25, 25, 75, 75);
  EXPECT_EQ(f.figures().eutilization, 0.25);
  EXPECT_TRUE(std::isnan(f.figures().putilization));
}

TEST(ModuleModelUtilization, ProcessorsOfNoClusterCountForTheWholeAlone) {
  UtilizationFixture f;
  f.reader->setClusterCPUs({{"E-Cluster", {0}}, {"P-Cluster", {1}}});
  f.ingestSecond(0, 100, 50, 50);
  expectFigures(f.figures(), {0.5, 0, 1, 0});
}

TEST(ModuleModelUtilization, WithoutAnEngineTheClustersStandAtNothing) {
  UtilizationFixture f;
  f.reader.reset();
  f.ingestSecond(50, 50, 50, 50);
  expectFigures(f.figures(), {0.5, 0, 0, 0});
}

TEST(ModuleModelUtilization, WhatIsKnownOfTheClustersOutlivesTheEngine) {
  UtilizationFixture f;
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.ingestSecond(0, 0, 0, 0);
  f.reader.reset();
  f.ingestSecond(25, 25, 75, 75);
  expectFigures(f.figures(), {0.5, 0.25, 0.75, 0});
}

TEST(ModuleModelUtilization, TheGPUIsReadAtEverySample) {
  UtilizationFixture f;
  f.setGPU(37);
  f.model->ingestSample();
  f.setGPU(0);
  f.model->ingestSample();
  f.setGPU(100);
  f.model->ingestSample();
  EXPECT_EQ(f.model->snapshot()->historicGPU.newest, (Values{1, 0, 0.37}));
}

TEST(ModuleModelUtilization, AGPUThatIsNotThereStandsAtNothing) {
  UtilizationFixture f;
  f.setGPU(37);
  f.model->ingestSample();
  f.accelerators.clear();
  f.model->ingestSample();
  EXPECT_EQ(f.figures().utilizationGPU, 0);
  EXPECT_FALSE(f.figures().isGPUTold);
  EXPECT_EQ(f.model->snapshot()->historicGPU.newest, (Values{0, 0.37}));
}

TEST(ModuleModelUtilization, AGPUWhoseStatisticsLackItsUtilisationStandsAtNothing) {
  UtilizationFixture f;
  f.setGPU(37);
  f.model->ingestSample();
  f.accelerators.clear();
  EXPECT_TRUE(f.figures().isGPUTold);
  f.accelerators.add(gpuWithoutUtilisation());
  f.model->ingestSample();
  EXPECT_FALSE(f.figures().isGPUTold);
  EXPECT_EQ(f.model->snapshot()->historicGPU.newest, (Values{0, 0.37}));
}

TEST(ModuleModelUtilization, ACounterOfBusyTicksThatTurnsNegativeReadsAlmostWhollyBusy) {
  UtilizationFixture f;
  f.ticks.set({{0x7FFFFFFF, 0, 0, 0}});
  f.model->ingestSample();
  f.ingest({{50, 0, 50, 0}});
  EXPECT_GT(f.figures().utilization, 1);
  EXPECT_NEAR(f.figures().utilization, 1, 1e-6);
}

TEST(ModuleModelUtilization, SinceBootAfterACounterTurnedNegativeTheFigureMeansNothing) {
  UtilizationFixture f;
  f.ticks.set({{1'000'000'000, 0, 0x80000000, 0}});
  f.model->ingestSample();
  EXPECT_LT(f.figures().utilization, -0.8);
}

TEST(ModuleModelUtilization, EachFigureEntersItsOwnHistoryTheNewestFirst) {
  UtilizationFixture f;
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.setGPU(40);
  f.ingestSecond(0, 50, 50, 100);
  f.setGPU(80);
  f.ingestSecond(0, 0, 0, 100);
  EXPECT_EQ(histories(*f.model->snapshot()),
            (std::vector<Values>{{0.25, 0.5}, {0, 0.25}, {0.5, 0.75}, {0.8, 0.4}}));
}

TEST(ModuleModelUtilization, EveryHistoryKeepsThreeHundredAndFiftyValues) {
  UtilizationFixture f;
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.setGPU(50);
  f.ingestSecond(100, 100, 100, 100);
  for (int i = 0; i < 350; ++i) f.ingestSecond(50, 50, 50, 50);
  const auto snapshot = f.model->snapshot();
  EXPECT_EQ(snapshot->historic.length, 350u);
  EXPECT_EQ(snapshot->historice.length, 350u);
  EXPECT_EQ(snapshot->historicp.length, 350u);
  EXPECT_EQ(snapshot->historicGPU.length, 350u);
  EXPECT_EQ(histories(*snapshot), std::vector<Values>(4, Values(350, 0.5)));
}

TEST(ModuleModelUtilization, ClearingEmptiesFiguresAndHistoriesAndPublishesOnce) {
  UtilizationFixture f;
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.setGPU(50);
  f.ingestSecond(50, 50, 50, 50);
  f.model->clearData();
  expectFigures(*f.model->snapshot(), {0, 0, 0, 0});
  EXPECT_EQ(histories(*f.model->snapshot()), std::vector<Values>(4));
  EXPECT_EQ(f.changes, 1);
}

TEST(ModuleModelUtilization, TheFirstSampleAfterClearingMeasuresFromTheOneBefore) {
  UtilizationFixture f;
  f.ingestSecond(100, 100, 100, 100);
  f.model->clearData();
  f.ingestSecond(25, 25, 25, 25);
  EXPECT_EQ(f.figures().utilization, 0.25);
}

TEST(ModuleModelUtilization, ClearingKeepsWhichProcessorsAreOfWhichKind) {
  UtilizationFixture f;
  f.reader->setClusterCPUs(kTwoAndTwo);
  f.ingestSecond(0, 0, 0, 0);
  f.model->clearData();
  f.reader->setClusterCPUs({});
  f.ingestSecond(25, 25, 75, 75);
  expectFigures(f.figures(), {0.5, 0.25, 0.75, 0});
}

TEST(ModuleModelUtilization, IngestingPublishesNothing) {
  UtilizationFixture f;
  f.ingestSecond(50, 50, 50, 50);
  EXPECT_EQ(f.changes, 0);
}

TEST(ModuleModelUtilization, UpdateViewPublishesAndChangesNothing) {
  UtilizationFixture f;
  f.ingestSecond(50, 50, 50, 50);
  const auto before = f.model->snapshot();
  f.model->updateView();
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(f.model->snapshot(), before);
}

TEST(ModuleModelUtilization, FollowsClearData) {
  UtilizationFixture f;
  f.ingestSecond(50, 50, 50, 50);
  f.notifications.post("ClearData");
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(f.model->snapshot()->historic.length, 0u);
}

TEST(ModuleModelUtilization, FollowsUpdateView) {
  UtilizationFixture f;
  f.notifications.post("UpdateView");
  EXPECT_EQ(f.changes, 1);
}

TEST(ModuleModelUtilization, FollowingNoticesDoesNotKeepTheModelAlive) {
  UtilizationFixture f;
  const std::weak_ptr<ModuleModelUtilization> weak = f.model;
  f.model.reset();
  EXPECT_TRUE(weak.expired());
  f.notifications.post("ClearData");
  EXPECT_EQ(f.changes, 0);
}

TEST(ModuleModelUtilization, TheHelpersManagerCanKeepALinkToIt) {
  UtilizationFixture f;
  const std::weak_ptr<helper_link::UtilizationModelDelegate> link = f.model;
  EXPECT_FALSE(link.expired());
  f.model.reset();
  EXPECT_TRUE(link.expired());
}

TEST(ModuleModelUtilization, ASnapshotDoesNotChangeWithTheModel) {
  UtilizationFixture f;
  f.ingestSecond(50, 50, 50, 50);
  const auto snapshot = f.model->snapshot();
  f.ingestSecond(0, 0, 0, 0);
  EXPECT_EQ(snapshot->utilization, 0.5);
  EXPECT_EQ(snapshot->historic.newest, Values{0.5});
}

}  // namespace
}  // namespace pallimo::modules
