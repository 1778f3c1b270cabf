// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/models/shared_general_model.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <vector>

#include "fakes/fake_platform.h"

namespace pallimo::app {
namespace {

TEST(SharedGeneralModel, IsCreatedOnTheFirstAccess) {
  fakes::FakePlatform platform;
  { const SharedGeneralModel shared(platform.platform()); }
  EXPECT_EQ(platform.console.lines(), std::vector<std::string>{});  // nothing was there to end
}

TEST(SharedGeneralModel, LaterAccessesReturnTheSame) {
  fakes::FakePlatform platform;
  const SharedGeneralModel shared(platform.platform());
  GeneralModel& first = SharedGeneralModel::get();
  EXPECT_EQ(&SharedGeneralModel::get(), &first);
}

TEST(SharedGeneralModel, IsCreatedOnceWhenThreadsMeet) {
  fakes::FakePlatform platform;
  {
    const SharedGeneralModel shared(platform.platform());
    std::array<GeneralModel*, 10> seen = {};
    std::vector<std::thread> threads;
    for (GeneralModel*& one : seen) {
      threads.emplace_back([&one] { one = &SharedGeneralModel::get(); });
    }
    for (std::thread& thread : threads) thread.join();
    for (const GeneralModel* one : seen) EXPECT_EQ(one, seen[0]);
  }
  EXPECT_EQ(platform.console.lines(), std::vector<std::string>{"DEINIT XPCManager"});
}

TEST(SharedGeneralModel, EndsWithMainsHold) {
  fakes::FakePlatform platform;
  {
    const SharedGeneralModel shared(platform.platform());
    SharedGeneralModel::get();
  }
  EXPECT_EQ(platform.console.lines(), std::vector<std::string>{"DEINIT XPCManager"});
}

TEST(SharedGeneralModel, WithoutAPlatformTheProgramStops) {
  EXPECT_DEATH(SharedGeneralModel::get(),
               "The general model was asked for before there was a platform\\.");
}

}  // namespace
}  // namespace pallimo::app
