// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_frequency.h"

#include "fakes/fake_sample_reader.h"

namespace pallimo::modules {
namespace {

using base::PropertyList;
using Values = std::vector<double>;

struct FrequencyFixture {
  base::NotificationCentre notifications;
  std::shared_ptr<fakes::FakeSampleReader> reader = std::make_shared<fakes::FakeSampleReader>();
  std::shared_ptr<ModuleModelFrequency> model = ModuleModelFrequency::create(notifications, reader);
  int changes = 0;
  base::Subscription observation = model->observe([this] { ++changes; });

  void ingest(sampling::ClusterFrequencies clusters, sampling::GPUFrequency gpu) {
    reader->setClusterFrequencies(std::move(clusters));
    reader->setGPUFrequency(std::move(gpu));
    model->ingestSample();
  }
  /// Three frequencies in MHz.
  void ingest(double eCluster, double pCluster, double gpu) {
    ingest({{"E-Cluster", eCluster}, {"P-Cluster", pCluster}}, {{"freq_hz", PropertyList(gpu)}});
  }
};

void expectFigures(const ModuleModelFrequency::Figures& figures, const Values& eCorePCoreGPU) {
  EXPECT_EQ((Values{figures.ECore, figures.PCore, figures.GPU}), eCorePCoreGPU);
}

/// The newest values of the three histories: E cores, P cores, GPU.
std::vector<Values> histories(const ModuleModelFrequency::Snapshot& s) {
  return {s.historicECore.newest, s.historicPCore.newest, s.historicGPU.newest};
}

TEST(ModuleModelFrequency, ShowsNothingBeforeTheFirstSample) {
  FrequencyFixture f;
  expectFigures(*f.model->snapshot(), {0, 0, 0});
  EXPECT_EQ(histories(*f.model->snapshot()), std::vector<Values>(3));
}

TEST(ModuleModelFrequency, MegahertzBecomeGigahertz) {
  FrequencyFixture f;
  f.ingest(2064, 3228, 1296);
  expectFigures(*f.model->snapshot(), {2.064, 3.228, 1.296});
}

TEST(ModuleModelFrequency, AnIntegralGPUFrequencyCountsAsANumber) {
  FrequencyFixture f;
  f.ingest({}, {{"freq_hz", PropertyList(std::int64_t{444})}});
  EXPECT_EQ(f.model->figures().GPU, 0.444);
}

TEST(ModuleModelFrequency, AGPUThatWasNotSampledStandsAtNothingAndEntersItsHistory) {
  FrequencyFixture f;
  f.ingest(1000, 2000, 500);
  f.ingest({{"E-Cluster", 1000}, {"P-Cluster", 2000}}, {});
  EXPECT_EQ(f.model->figures().GPU, 0);
  EXPECT_EQ(f.model->snapshot()->historicGPU.newest, (Values{0, 0.5}));
}

TEST(ModuleModelFrequency, AGPUReadingThatIsNoNumberCountsAsNothing) {
  FrequencyFixture f;
  f.ingest({}, {{"freq_hz", PropertyList(std::string("444"))}});
  EXPECT_EQ(f.model->figures().GPU, 0);
  f.ingest({}, {{"freq_hz", PropertyList(true)}});
  EXPECT_EQ(f.model->figures().GPU, 0);
}

TEST(ModuleModelFrequency, OtherGPUReadingsAreNotItsFrequency) {
  FrequencyFixture f;
  f.ingest({}, {{"freq", PropertyList(444.0)}});
  EXPECT_EQ(f.model->figures().GPU, 0);
}

TEST(ModuleModelFrequency, AMachineWithoutPerformanceCoresRecordsNothingForThem) {
  FrequencyFixture f;
  f.ingest({{"E-Cluster", 1000}}, {});
  f.ingest({{"E-Cluster", 1100}}, {});
  EXPECT_EQ(histories(*f.model->snapshot()), (std::vector<Values>{{1.1, 1}, {0, 0}, {0, 0}}));
}

TEST(ModuleModelFrequency, AMachineWithoutEfficiencyCoresRecordsNothingForThem) {
  FrequencyFixture f;
  f.ingest({{"P-Cluster", 1000}}, {});
  expectFigures(*f.model->snapshot(), {0, 1, 0});
}

TEST(ModuleModelFrequency, WithoutAnEngineEveryReadingIsNothing) {
  FrequencyFixture f;
  f.ingest(1000, 2000, 500);
  f.reader.reset();
  f.model->ingestSample();
  EXPECT_EQ(histories(*f.model->snapshot()), (std::vector<Values>{{0, 1}, {0, 2}, {0, 0.5}}));
}

TEST(ModuleModelFrequency, EachReadingEntersItsOwnHistoryTheNewestFirst) {
  FrequencyFixture f;
  f.ingest(1000, 2000, 500);
  f.ingest(1500, 3000, 250);
  EXPECT_EQ(histories(*f.model->snapshot()), (std::vector<Values>{{1.5, 1}, {3, 2}, {0.25, 0.5}}));
}

TEST(ModuleModelFrequency, EveryHistoryKeepsThreeHundredAndFiftyValues) {
  FrequencyFixture f;
  for (int i = 0; i < 351; ++i) f.ingest(1000 + i, 2000 + i, 500 + i);
  const auto snapshot = f.model->snapshot();
  EXPECT_EQ(snapshot->historicECore.length, 350u);
  EXPECT_EQ(snapshot->historicPCore.length, 350u);
  EXPECT_EQ(snapshot->historicGPU.length, 350u);
  EXPECT_EQ(snapshot->historicECore.newest.front(), 1.35);
  EXPECT_EQ(snapshot->historicECore.newest.back(), 1.001);
}

TEST(ModuleModelFrequency, ClearingEmptiesFiguresAndHistoriesAndPublishesOnce) {
  FrequencyFixture f;
  f.ingest(1000, 2000, 500);
  f.model->clearData();
  expectFigures(*f.model->snapshot(), {0, 0, 0});
  EXPECT_EQ(histories(*f.model->snapshot()), std::vector<Values>(3));
  EXPECT_EQ(f.changes, 1);
}

TEST(ModuleModelFrequency, IngestingPublishesNothing) {
  FrequencyFixture f;
  f.ingest(1000, 2000, 500);
  EXPECT_EQ(f.changes, 0);
}

TEST(ModuleModelFrequency, UpdateViewPublishesAndChangesNothing) {
  FrequencyFixture f;
  f.ingest(1000, 2000, 500);
  const auto before = f.model->snapshot();
  f.model->updateView();
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(f.model->snapshot(), before);
}

TEST(ModuleModelFrequency, FollowsClearData) {
  FrequencyFixture f;
  f.ingest(1000, 2000, 500);
  f.notifications.post("ClearData");
  EXPECT_EQ(f.changes, 1);
  EXPECT_EQ(f.model->snapshot()->historicECore.length, 0u);
}

TEST(ModuleModelFrequency, FollowsUpdateView) {
  FrequencyFixture f;
  f.notifications.post("UpdateView");
  EXPECT_EQ(f.changes, 1);
}

TEST(ModuleModelFrequency, FollowingNoticesDoesNotKeepTheModelAlive) {
  FrequencyFixture f;
  const std::weak_ptr<ModuleModelFrequency> weak = f.model;
  f.model.reset();
  EXPECT_TRUE(weak.expired());
  f.notifications.post("ClearData");
  EXPECT_EQ(f.changes, 0);
}

TEST(ModuleModelFrequency, ASnapshotDoesNotChangeWithTheModel) {
  FrequencyFixture f;
  f.ingest(1000, 2000, 500);
  const auto snapshot = f.model->snapshot();
  f.ingest(1500, 3000, 250);
  expectFigures(*snapshot, {1, 2, 0.5});
  EXPECT_EQ(snapshot->historicGPU.newest, Values{0.5});
}

}  // namespace
}  // namespace pallimo::modules
