// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "allocations/counted_memory.h"
#include "fakes/fake_helper_listener.h"
#include "fakes/manual_main_queue.h"
#include "fakes/recording_lines.h"
#include "helper/helper_service.h"

namespace pallimo::soak {
namespace {

/// Programs that end when the test says so, and of which nothing is kept then.
class PassingChildren final : public ports::ChildProcesses {
 public:
  std::unique_ptr<ports::ChildProcess> start(
      const ports::ChildCommand&, std::function<void(ports::ChildOutcome)> finished) override {
    running_.push_back(std::make_shared<Finished>(std::move(finished)));
    return std::make_unique<Handle>(running_.back());
  }

  std::size_t running() const { return running_.size(); }
  /// The program that runs longest prints a document.
  void finishOldest() {
    const auto finished = std::exchange(*running_.front(), nullptr);
    running_.pop_front();
    if (finished) finished({ports::ChildOutcome::End::exited, 0, base::Bytes(5000, 'x')});
  }

 private:
  using Finished = std::function<void(ports::ChildOutcome)>;

  struct Handle final : ports::ChildProcess {
    explicit Handle(std::shared_ptr<Finished> run) : finished(std::move(run)) {}
    ~Handle() override { *finished = nullptr; }
    const std::shared_ptr<Finished> finished;
  };

  std::deque<std::shared_ptr<Finished>> running_;
};

struct NoFiles final : ports::HelperFiles {
  void removeInstalled() override {}
};

/// A helper that listens, in a memory that is counted.
class HelperMemory : public testing::Test {
 protected:
  static constexpr int kWarmUp = 1024;
  static constexpr int kLong = 4 * kWarmUp;

  HelperMemory() {
    EXPECT_TRUE(service_->start());
    client_ = listener_.connect();
  }

  /// A sample a second, each from a run of `seconds`.
  void sampleFor(int samples, std::size_t seconds) {
    for (int sample = 0; sample < samples; ++sample) {
      client_.helper->requestPowermetrics(1000.0 * static_cast<double>(seconds), true);
      if (children_.running() == seconds) children_.finishOldest();
      mainQueue_.advance(std::chrono::seconds(1));
      results_ += client_.peer->results.size();
      client_.peer->results.clear();
    }
  }

  static std::int64_t growthWhile(const std::function<void()>& longTime) {
    const std::int64_t before = allocations::liveBytes();
    longTime();
    return allocations::liveBytes() - before;
  }

  fakes::ManualMainQueue mainQueue_;
  PassingChildren children_;
  fakes::RecordingSystemLog log_;
  NoFiles files_;
  helper::PowermetricsRuns runs_{{children_, log_}, {"/usr/bin/powermetrics", true, nullptr}};
  fakes::FakeHelperListener listener_;
  std::shared_ptr<helper::HelperService> service_ = std::make_shared<helper::HelperService>(
      helper::HelperService::Services{mainQueue_, listener_, files_, runs_},
      helper::HelperService::Settings{"1.2.3"}, [] {});
  fakes::FakeHelperClient client_;
  std::size_t results_ = 0;
};

TEST_F(HelperMemory, StaysTheSameFromSampleToSample) {
  sampleFor(kWarmUp, 1);
  EXPECT_EQ(growthWhile([this] { sampleFor(kLong, 1); }), 0);
  EXPECT_EQ(results_, static_cast<std::size_t>(kWarmUp + kLong));
}

TEST_F(HelperMemory, StaysTheSameWhileTenRunsStandSideBySide) {
  sampleFor(kWarmUp, 10);
  EXPECT_EQ(growthWhile([this] { sampleFor(kLong, 10); }), 0);
  EXPECT_EQ(children_.running(), 9u);
}

TEST_F(HelperMemory, IsNotTakenByRequestsThatWaitToBeRefused) {
  const auto askForMore = [this](int requests) {
    for (int request = 0; request < requests; ++request) {
      client_.helper->requestPowermetrics(1000, true);
    }
  };
  askForMore(kWarmUp);
  EXPECT_EQ(children_.running(), helper::kMostRuns);
  // Fewer than would bring another line about them.
  EXPECT_EQ(growthWhile([&] { askForMore(kLong); }), 0);
}

TEST_F(HelperMemory, IsGivenBackByClientsThatLeave) {
  const auto comeAndGo = [this](int clients) {
    for (int each = 0; each < clients; ++each) {
      const fakes::FakeHelperClient other = listener_.connect();
      other.helper->requestPowermetrics(1000, false);
      listener_.disconnect(other);
      children_.finishOldest();
    }
  };
  comeAndGo(kWarmUp);
  EXPECT_EQ(growthWhile([&] { comeAndGo(kLong); }), 0);
}

}  // namespace
}  // namespace pallimo::soak
