// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <cstddef>
#include <functional>

#include "unit/sampling/sg_power_metrics_fixture.h"

namespace pallimo::sampling {
namespace {

using testing::EngineFixture;
using Names = std::vector<std::string>;

const Names kAllSteps = {"power", "utilization", "frequency", "temperature", "log"};

double cpuEnergy(const SGPowerMetrics& engine) {
  const PowerValues values = engine.getPowerValues();
  const auto found = values.find("cpu_energy");
  return found == values.end() ? -1 : found->second.numberOr(-1);
}

/// A module that does what the test says.
struct Probe final : SampleConsumer {
  std::function<void()> action;
  void ingestSample() override { action(); }
};

TEST(SGPowerMetricsResults, TheSampleIsEmptyAtFirst) {
  EngineFixture f;
  f.create();
  EXPECT_TRUE(f.engine->getPowerValues().empty());
  EXPECT_TRUE(f.engine->getGPUFrequency().empty());
  EXPECT_TRUE(f.engine->getClusterCPUs().empty());
  EXPECT_EQ(f.engine->getClusterFrequencies(),
            (ClusterFrequencies{{"E-Cluster", 0}, {"P-Cluster", 0}}));
}

TEST(SGPowerMetricsResults, TheModulesComeInOrderAndTheLogLast) {
  EngineFixture f;
  f.create().handleResult(f.documentWithCPUEnergy(1));
  EXPECT_EQ(f.steps, kAllSteps);
}

TEST(SGPowerMetricsResults, TheViewsAreToldFromTheMainQueueOnce) {
  EngineFixture f;
  f.create().handleResult(f.documentWithCPUEnergy(1));
  f.steps.clear();
  f.mainQueue.run();
  EXPECT_EQ(f.steps, Names{"UpdateView"});
}

/// A log that looks at what is queued when its turn comes.
struct QueueWatcher final : RowLog {
  explicit QueueWatcher(const fakes::ManualMainQueue& watched) : queue(watched) {}
  void appendRow() override { seen = queue.queuedTasks(); }

  const fakes::ManualMainQueue& queue;
  std::size_t seen = 99;
};

TEST(SGPowerMetricsResults, TheRefreshIsQueuedAfterTheRow) {
  EngineFixture f;
  f.create();
  const auto log = std::make_shared<QueueWatcher>(f.mainQueue);
  f.engine->setFanout({f.power, {}, {}, {}, log});
  f.engine->handleResult(f.documentWithCPUEnergy(1));
  EXPECT_EQ(log->seen, 0u);
  EXPECT_EQ(f.mainQueue.queuedTasks(), 1u);
}

TEST(SGPowerMetricsResults, TheModulesReadTheNewSample) {
  EngineFixture f;
  f.create();
  double seen = 0;
  const auto probe = std::make_shared<Probe>();
  probe->action = [&] { seen = cpuEnergy(*f.engine); };
  f.engine->setFanout({probe, {}, {}, {}, {}});
  f.engine->handleResult(f.documentWithCPUEnergy(1234));
  EXPECT_EQ(seen, 1234);
}

TEST(SGPowerMetricsResults, TheReadOperationsPickTheirFiguresFromTheSample) {
  EngineFixture f;
  using base::PropertyList;
  using Dictionary = base::PropertyListDictionary;
  Dictionary cpu;
  cpu.emplace_back("cpu", PropertyList(std::int64_t{3}));
  base::PropertyListArray cpus;
  cpus.emplace_back(std::move(cpu));
  Dictionary cluster;
  cluster.emplace_back("name", PropertyList(std::string("E-Cluster")));
  cluster.emplace_back("freq_hz", PropertyList(2'064'000'000.0));
  cluster.emplace_back("cpus", PropertyList(std::move(cpus)));
  base::PropertyListArray clusters;
  clusters.emplace_back(std::move(cluster));
  Dictionary processor;
  processor.emplace_back("clusters", PropertyList(std::move(clusters)));
  Dictionary gpu;
  gpu.emplace_back("freq_hz", PropertyList(444.5));
  Dictionary document;
  document.emplace_back("processor", PropertyList(std::move(processor)));
  document.emplace_back("gpu", PropertyList(std::move(gpu)));
  f.create().handleResult(f.reader.add(PropertyList(std::move(document))));
  EXPECT_EQ(f.engine->getClusterFrequencies(),
            (ClusterFrequencies{{"E-Cluster", 2064}, {"P-Cluster", 0}}));
  EXPECT_EQ(f.engine->getGPUFrequency(), (GPUFrequency{{"freq_hz", PropertyList(444.5)}}));
  EXPECT_EQ(f.engine->getClusterCPUs(), (ClusterCPUs{{"E-Cluster", {3}}, {"P-Cluster", {}}}));
}

TEST(SGPowerMetricsResults, AResultWithoutBytesTouchesNothing) {
  EngineFixture f;
  f.create().handleResult(f.documentWithCPUEnergy(7));
  f.mainQueue.run();
  f.steps.clear();
  f.engine->handleResult(std::nullopt);
  f.mainQueue.run();
  EXPECT_EQ(cpuEnergy(*f.engine), 7);
  EXPECT_TRUE(f.steps.empty());
}

TEST(SGPowerMetricsResults, ResultsWithoutBytesAreCountedAndNoOthers) {
  EngineFixture f;
  f.create().handleResult(f.documentWithCPUEnergy(7));
  f.engine->handleResult(base::Bytes{});
  f.engine->handleResult(base::Bytes{1, 2, 3});
  EXPECT_EQ(f.engine->emptyResults(), 0u);
  f.engine->handleResult(std::nullopt);
  f.engine->handleResult(std::nullopt);
  EXPECT_EQ(f.engine->emptyResults(), 2u);
}

TEST(SGPowerMetricsResults, BytesThatAreNoDocumentEmptyTheSampleAndAreDistributed) {
  EngineFixture f;
  f.create().handleResult(f.documentWithCPUEnergy(7));
  f.steps.clear();
  f.engine->handleResult(base::Bytes{1, 2, 3});
  EXPECT_TRUE(f.engine->getPowerValues().empty());
  EXPECT_EQ(f.steps, kAllSteps);
}

TEST(SGPowerMetricsResults, AnEmptyBufferCountsAsBytes) {
  EngineFixture f;
  f.create().handleResult(f.documentWithCPUEnergy(7));
  f.steps.clear();
  f.engine->handleResult(base::Bytes{});
  EXPECT_TRUE(f.engine->getPowerValues().empty());
  EXPECT_EQ(f.steps, kAllSteps);
}

TEST(SGPowerMetricsResults, ADocumentThatIsNoDictionaryEmptiesTheSample) {
  EngineFixture f;
  f.create().handleResult(f.documentWithCPUEnergy(7));
  f.engine->handleResult(f.reader.add(base::PropertyList(base::PropertyListArray{})));
  EXPECT_TRUE(f.engine->getPowerValues().empty());
}

TEST(SGPowerMetricsResults, NothingOfAnEarlierSampleSurvives) {
  EngineFixture f;
  f.create().handleResult(f.documentWithCPUEnergy(7));
  f.engine->handleResult(f.reader.add(base::PropertyList()));
  EXPECT_TRUE(f.engine->getPowerValues().empty());
}

TEST(SGPowerMetricsResults, TheNextGoodResultFillsTheSampleAgain) {
  EngineFixture f;
  f.create().handleResult(base::Bytes{1, 2, 3});
  f.engine->handleResult(f.documentWithCPUEnergy(8));
  EXPECT_EQ(cpuEnergy(*f.engine), 8);
}

TEST(SGPowerMetricsResults, EachResultIsDistributedByItselfInArrivalOrder) {
  EngineFixture f;
  f.create();
  std::vector<double> seen;
  const auto probe = std::make_shared<Probe>();
  probe->action = [&] { seen.push_back(cpuEnergy(*f.engine)); };
  f.engine->setFanout({probe, {}, {}, {}, f.log});
  f.engine->handleResult(f.documentWithCPUEnergy(1));
  f.engine->handleResult(f.documentWithCPUEnergy(2));
  f.mainQueue.run();
  EXPECT_EQ(seen, (std::vector<double>{1, 2}));
  EXPECT_EQ(f.steps, (Names{"log", "log", "UpdateView", "UpdateView"}));
}

/// What happened after a result that found the gate as `close` left it.
Names stepsBehind(const std::function<void(EngineFixture&)>& close) {
  EngineFixture f;
  f.start();
  close(f);
  f.engine->handleResult(f.documentWithCPUEnergy(9));
  f.mainQueue.run();
  EXPECT_EQ(cpuEnergy(*f.engine), 9);  // kept all the same
  return f.steps;
}

TEST(SGPowerMetricsResults, AResultWhileTheManagerIsNotAuthorisedIsKeptAndNotDistributed) {
  EXPECT_TRUE(stepsBehind([](EngineFixture& f) { f.gate->setAuthorized(false); }).empty());
}

TEST(SGPowerMetricsResults, AResultWhileTheHelperIsBeingRemovedIsKeptAndNotDistributed) {
  EXPECT_TRUE(stepsBehind([](EngineFixture& f) { f.gate->setRequestedToUninstall(true); }).empty());
}

TEST(SGPowerMetricsResults, AResultWithoutAManagerIsKeptAndNotDistributed) {
  EXPECT_TRUE(stepsBehind([](EngineFixture& f) { f.gate.reset(); }).empty());
}

TEST(SGPowerMetricsResults, TheGateDecidesNotTheTimer) {
  EXPECT_EQ(stepsBehind([](EngineFixture& f) { f.engine->stopTimer(); }).size(),
            kAllSteps.size() + 1);
}

TEST(SGPowerMetricsResults, EachThatIsGoneIsSkipped) {
  const auto all = {&EngineFixture::power, &EngineFixture::utilization, &EngineFixture::frequency,
                    &EngineFixture::temperature, &EngineFixture::log};
  for (std::size_t gone = 0; gone < all.size(); ++gone) {
    EngineFixture f;
    f.create();
    (f.*all.begin()[gone]).reset();
    f.engine->handleResult(f.documentWithCPUEnergy(1));
    f.mainQueue.run();
    Names others = kAllSteps;
    others.erase(others.begin() + static_cast<std::ptrdiff_t>(gone));
    others.emplace_back("UpdateView");
    EXPECT_EQ(f.steps, others);
  }
}

TEST(SGPowerMetricsResults, ARefreshThatIsStillQueuedEndsWithTheEngine) {
  EngineFixture f;
  f.create().handleResult(f.documentWithCPUEnergy(1));
  f.steps.clear();
  const std::weak_ptr<SGPowerMetrics> weak = f.engine;
  f.engine.reset();
  EXPECT_TRUE(weak.expired());
  f.mainQueue.run();
  EXPECT_TRUE(f.steps.empty());
}

}  // namespace
}  // namespace pallimo::sampling
