// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/faults/faulty_helper_listener.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "fakes/fake_helper_listener.h"

namespace pallimo::adapters::simulated {
namespace {

using helper_link::protocol::XPCProtocol;
using Events = std::vector<std::string>;

/// A helper without faults; notes what reaches it.
class SoundHelper final : public XPCProtocol {
 public:
  explicit SoundHelper(Events& events) : events_(events) {}

  void isResponding(std::function<void(bool)> completion) override { completion(true); }
  void unInstallHelper() override { events_.push_back("unInstallHelper"); }
  void getVersion(std::function<void(std::string)> completion) override { completion("1.2"); }
  void requestPowermetrics(double msSampling, bool includeGPU) override {
    events_.push_back("request " + std::to_string(std::lround(msSampling)) +
                      (includeGPU ? " with GPU" : ""));
  }
  void closeHelper() override { events_.push_back("closeHelper"); }

 private:
  Events& events_;
};

class FaultyHelperListenerTest : public ::testing::Test, public ports::HelperListener::Delegate {
 protected:
  std::shared_ptr<XPCProtocol> accept(std::shared_ptr<ports::HelperPeer> peer) override {
    accepted_ = std::move(peer);
    return admits_ ? std::make_shared<SoundHelper>(events_) : nullptr;
  }
  void disconnected(const std::shared_ptr<ports::HelperPeer>& peer) override {
    events_.push_back(peer == accepted_ ? "disconnected" : "a stranger disconnected");
  }

  FaultyHelperListener& listen(const Faults& faults) {
    auto system = std::make_unique<fakes::FakeHelperListener>();
    system_ = system.get();
    system_->canStart = canStart_;
    listener_ = std::make_unique<FaultyHelperListener>(std::move(system), faults,
                                                       [this] { events_.push_back("dies"); });
    isListening_ = listener_->start(*this);
    return *listener_;
  }
  fakes::FakeHelperClient connectTo(const Faults& faults) {
    listen(faults);
    return system_->connect();
  }
  std::string answerOf(const fakes::FakeHelperClient& client) {
    std::string answer = "none";
    client.helper->isResponding([&answer](bool is) { answer = is ? "YES" : "NO"; });
    return answer;
  }

  bool canStart_ = true;
  bool admits_ = true;
  bool isListening_ = false;
  Events events_;
  std::shared_ptr<ports::HelperPeer> accepted_;
  fakes::FakeHelperListener* system_ = nullptr;
  std::unique_ptr<FaultyHelperListener> listener_;
};

TEST_F(FaultyHelperListenerTest, WithoutAFaultEveryMessagePassesThrough) {
  const auto client = connectTo({});
  std::string version;
  EXPECT_EQ(answerOf(client), "YES");
  client.helper->getVersion([&version](std::string text) { version = std::move(text); });
  EXPECT_EQ(version, "1.2");
  client.helper->requestPowermetrics(500, true);
  client.helper->unInstallHelper();
  client.helper->closeHelper();
  EXPECT_EQ(events_, (Events{"request 500 with GPU", "unInstallHelper", "closeHelper"}));
}

TEST_F(FaultyHelperListenerTest, ThePeerIsTheListenersOwn) {
  const auto client = connectTo({.helperSilent = true});
  EXPECT_EQ(accepted_, client.peer);
  system_->disconnect(client);
  EXPECT_EQ(events_, Events{"disconnected"});
}

TEST_F(FaultyHelperListenerTest, ListeningBeginsAndEndsWithTheListenersOwn) {
  FaultyHelperListener& listener = listen({});
  EXPECT_TRUE(isListening_);
  EXPECT_TRUE(system_->isListening);
  listener.stop();
  EXPECT_FALSE(system_->isListening);
}

TEST_F(FaultyHelperListenerTest, AListenerThatCannotStartSaysSo) {
  canStart_ = false;
  listen({});
  EXPECT_FALSE(isListening_);
}

TEST_F(FaultyHelperListenerTest, WhoIsNotAnsweredByAnybodyIsNotAnsweredHere) {
  admits_ = false;
  EXPECT_EQ(connectTo({}).helper, nullptr);
}

TEST_F(FaultyHelperListenerTest, ASilentHelperNeverAnswersTheProbe) {
  EXPECT_EQ(answerOf(connectTo({.helperSilent = true})), "none");
}

TEST_F(FaultyHelperListenerTest, AHelperMayAnswerNo) {
  EXPECT_EQ(answerOf(connectTo({.helperAnswersNo = true})), "NO");
}

TEST_F(FaultyHelperListenerTest, SilenceComesBeforeNo) {
  EXPECT_EQ(answerOf(connectTo({.helperSilent = true, .helperAnswersNo = true})), "none");
}

TEST_F(FaultyHelperListenerTest, ASilentHelperStillTellsItsVersionAndServes) {
  const auto client = connectTo({.helperSilent = true});
  std::string version;
  client.helper->getVersion([&version](std::string text) { version = std::move(text); });
  client.helper->requestPowermetrics(1000, false);
  EXPECT_EQ(version, "1.2");
  EXPECT_EQ(events_, Events{"request 1000"});
}

std::string versionOf(const fakes::FakeHelperClient& client) {
  std::string version = "none";
  client.helper->getVersion([&version](std::string text) { version = std::move(text); });
  return version;
}

TEST_F(FaultyHelperListenerTest, AHelperMayClaimAnotherVersion) {
  EXPECT_EQ(versionOf(connectTo({.helperVersion = "0.0.9"})), "0.0.9");
}

TEST_F(FaultyHelperListenerTest, AHelperMayClaimAVersionWithoutText) {
  EXPECT_EQ(versionOf(connectTo({.helperVersion = ""})), "");
}

TEST_F(FaultyHelperListenerTest, TheHelperDiesAtTheFirstRequestWithoutServingIt) {
  connectTo({.helperDiesOnRequest = 1}).helper->requestPowermetrics(1000, false);
  EXPECT_EQ(events_, Events{"dies"});
}

TEST_F(FaultyHelperListenerTest, RequestsAreCountedOverAllClients) {
  const auto one = connectTo({.helperDiesOnRequest = 3});
  const auto other = system_->connect();
  one.helper->requestPowermetrics(1, false);
  other.helper->requestPowermetrics(2, false);
  EXPECT_EQ(events_, (Events{"request 1", "request 2"}));
  one.helper->requestPowermetrics(3, false);
  EXPECT_EQ(events_.back(), "dies");
}

TEST_F(FaultyHelperListenerTest, OnlyRequestsAreCounted) {
  const auto client = connectTo({.helperDiesOnRequest = 1});
  EXPECT_EQ(answerOf(client), "YES");
  client.helper->unInstallHelper();
  client.helper->closeHelper();
  EXPECT_EQ(events_, (Events{"unInstallHelper", "closeHelper"}));
}

}  // namespace
}  // namespace pallimo::adapters::simulated
