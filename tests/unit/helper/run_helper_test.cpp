// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/run_helper.h"

#include <utility>

#include "unit/helper/helper_service_fixture.h"

namespace pallimo::helper {
namespace {

using namespace std::chrono_literals;

/// A system without a system: its main queue runs a script instead of waiting.
class FakeHelperPlatform final : public HelperPlatform {
 public:
  ports::MainQueue& mainQueue() override { return queue; }
  ports::ChildProcesses& childProcesses() override { return children; }
  ports::HelperFiles& helperFiles() override { return files; }
  ports::SystemLog& systemLog() override { return log; }
  std::unique_ptr<ports::HelperListener> makeListener() override {
    auto made = std::make_unique<fakes::FakeHelperListener>();
    made->canStart = canListen;
    listener = made.get();
    return made;
  }
  PowermetricsTool powermetrics() override {
    return {"/usr/bin/powermetrics", true, [](std::uint64_t number) {
              return std::vector<std::string>{"N=" + std::to_string(number)};
            }};
  }
  std::string version() override { return "4.5.6"; }
  void didStart() override { events.push_back(listener->isListening ? "listens" : "can't listen"); }
  void run() override {
    events.push_back("runs");
    if (script) script();
  }
  void stop() override { events.push_back("stops"); }

  fakes::ManualMainQueue queue;
  fakes::FakeChildProcesses children;
  CountingHelperFiles files;
  fakes::RecordingSystemLog log;
  bool canListen = true;
  fakes::FakeHelperListener* listener = nullptr;  // while the helper runs
  std::function<void()> script;
  std::vector<std::string> events;
};

using Events = std::vector<std::string>;

TEST(RunHelper, SaysThatItHasStartedOnceItListens) {
  FakeHelperPlatform platform;
  EXPECT_EQ(runHelper(platform), 0);
  EXPECT_EQ(platform.events, (Events{"listens", "runs"}));
}

TEST(RunHelper, EndsQuietlyWhenAnotherHelperServes) {
  FakeHelperPlatform platform;
  platform.canListen = false;
  EXPECT_EQ(runHelper(platform), 0);
  EXPECT_EQ(platform.events, Events{"can't listen"});
  EXPECT_TRUE(platform.log.lines().empty());
}

TEST(RunHelper, StopsAfterFiveSecondsWithoutAClient) {
  FakeHelperPlatform platform;
  platform.script = [&platform] {
    platform.queue.advance(4999ms);
    platform.events.push_back("a moment before");
    platform.queue.advance(1ms);
  };
  runHelper(platform);
  EXPECT_EQ(platform.events, (Events{"listens", "runs", "a moment before", "stops"}));
}

TEST(RunHelper, ServesAClientFromTheRequestToTheDocument) {
  FakeHelperPlatform platform;
  Results results;
  platform.script = [&] {
    const auto client = platform.listener->connect();
    client.helper->requestPowermetrics(500, true);
    platform.children.print(0, std::string("\0<plist/>\0", 10));
    results = client.results();
  };
  runHelper(platform);
  EXPECT_EQ(results, Results{"<plist/>"});
  EXPECT_EQ(platform.children.command(0).environment.back(), "N=1");
}

TEST(RunHelper, AnswersWithThePlatformsVersion) {
  FakeHelperPlatform platform;
  std::string answer;
  platform.script = [&] {
    platform.listener->connect().helper->getVersion([&](std::string text) { answer = text; });
  };
  runHelper(platform);
  EXPECT_EQ(answer, "4.5.6");
}

TEST(RunHelper, LeavesNoChildWhenTheSystemEndsIt) {
  FakeHelperPlatform platform;
  platform.script = [&platform] {
    platform.listener->connect().helper->requestPowermetrics(1000, false);
    EXPECT_EQ(platform.children.running(), 1U);
  };
  runHelper(platform);
  EXPECT_EQ(platform.children.running(), 0U);
}

}  // namespace
}  // namespace pallimo::helper
