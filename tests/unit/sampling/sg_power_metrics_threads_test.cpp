// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <atomic>
#include <thread>

#include "unit/sampling/sg_power_metrics_fixture.h"

namespace pallimo::sampling {
namespace {

using testing::EngineFixture;

constexpr int kRounds = 300;

TEST(SGPowerMetricsThreads, ResultsReadersSettingsAndStartsMayMeet) {
  EngineFixture f;
  const std::vector<base::Bytes> documents = {f.documentWithCPUEnergy(1),
                                              f.documentWithCPUEnergy(2)};
  SGPowerMetrics& engine = f.create();
  // The list of steps is the delivery thread's alone here.
  int views = 0;
  f.updateView = f.notifications.observe("UpdateView", [&] { ++views; });
  std::atomic<int> running = 3;
  std::atomic<bool> allGood = true;

  std::thread delivery([&] {
    for (int i = 0; i < kRounds; ++i) engine.handleResult(documents[i % 2 == 0 ? 0 : 1]);
    --running;
  });
  std::thread reader([&] {
    for (int i = 0; i < kRounds; ++i) {
      const PowerValues values = engine.getPowerValues();
      if (values.empty()) continue;  // before the first result
      const double energy = values.begin()->second.numberOr(0);
      if (energy != 1 && energy != 2) allGood = false;
    }
    --running;
  });
  std::thread user([&] {
    for (int i = 0; i < kRounds; ++i) {
      f.defaults.setDouble("samplingResolution", i % 2 == 0 ? 200 : 300);
      engine.setAuthorized(i % 3 != 0);
    }
    --running;
  });
  while (running > 0) f.mainQueue.run();
  delivery.join();
  reader.join();
  user.join();
  f.mainQueue.run();

  EXPECT_TRUE(allGood);
  EXPECT_EQ(engine.msSampling(), 300);
  EXPECT_EQ(f.clearDataNotices, kRounds);
  EXPECT_EQ(views, kRounds);
  EXPECT_EQ(f.steps.size(), 5u * kRounds);
}

}  // namespace
}  // namespace pallimo::sampling
