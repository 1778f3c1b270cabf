// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/helper_inquiry.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fakes/fake_helper_connector.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"

namespace pallimo::app {
namespace {

using namespace std::chrono_literals;
using State = HelperInquiry::State;
using Lines = std::vector<std::string>;

class HelperInquiryTest : public testing::Test {
 protected:
  HelperInquiryTest() { question_.expectedVersion = "1.0"; }
  ~HelperInquiryTest() override { queue_.run(); }

  void start() {
    inquiry_ = HelperInquiry::create(
        {queue_, connector_, clock_}, question_,
        [this](const base::Bytes& document) { documents_.push_back(document); },
        [this](const HelperInquiry::Findings& findings) { ends_.push_back(findings); });
    inquiry_->start();
    EXPECT_TRUE(ends_.empty()) << "ended from within start()";
    queue_.run();
  }
  void startWithUsableHelper() {
    start();
    answer(true, "1.0");
  }
  void answer(bool isResponding, const std::string& version) {
    helper().replyIsResponding(isResponding);
    helper().replyVersion(version);
    queue_.run();
  }
  void send(std::optional<base::Bytes> document) {
    helper().sendResult(std::move(document));
    queue_.run();
  }

  fakes::FakeHelperConnection& helper() { return *connector_.latest(); }
  /// What it ended with; nothing while it has not, or when it did so twice.
  std::optional<State> end() const {
    return ends_.size() == 1 ? std::optional(ends_[0].state) : std::nullopt;
  }
  Lines messages() {
    Lines messages;
    for (const std::string& entry : connector_.journal().take()) {
      if (entry.rfind("-> ", 0) == 0) messages.push_back(entry.substr(3));
    }
    return messages;
  }

  fakes::ManualMainQueue queue_;
  fakes::FakeHelperConnector connector_;
  fakes::ManualClock clock_;
  HelperInquiry::Question question_;
  std::shared_ptr<HelperInquiry> inquiry_;
  std::vector<base::Bytes> documents_;
  std::vector<HelperInquiry::Findings> ends_;
};

TEST_F(HelperInquiryTest, AsksForAnswerVersionAndOneSampleAndForNothingElse) {
  question_.msSampling = 750;
  question_.includeGPU = true;
  startWithUsableHelper();
  send(base::Bytes{'x'});
  queue_.advance(1min);
  EXPECT_EQ(messages(),
            (Lines{"isResponding", "getVersion", "requestPowermetrics 750.000000 GPU"}));
  EXPECT_EQ(connector_.count(), 1u);
}

TEST_F(HelperInquiryTest, FindsAHelperThatServes) {
  startWithUsableHelper();
  clock_.advance(612ms);
  send(base::Bytes{'x', 'y'});
  EXPECT_EQ(end(), State::serves);
  EXPECT_EQ(ends_[0].version, "1.0");
  EXPECT_EQ(ends_[0].answerTime, 612ms);
  EXPECT_EQ(documents_, (std::vector<base::Bytes>{{'x', 'y'}}));
}

TEST_F(HelperInquiryTest, FindsNoHelperWhereNobodyServesTheName) {
  connector_.setFailsAtOnce(true);
  start();
  EXPECT_EQ(end(), State::absent);
  EXPECT_EQ(ends_[0].version, std::nullopt);
}

TEST_F(HelperInquiryTest, FindsNoHelperWithoutAConnectionOrItsProxy) {
  connector_.setHasProxies(false);
  start();
  EXPECT_EQ(end(), State::absent);
  ends_.clear();
  connector_.setConnects(false);
  start();
  EXPECT_EQ(end(), State::absent);
}

TEST_F(HelperInquiryTest, WaitsFiveSecondsForASilentHelper) {
  start();
  queue_.advance(4999ms);
  EXPECT_EQ(end(), std::nullopt);
  queue_.advance(1ms);
  EXPECT_EQ(end(), State::silent);
}

TEST_F(HelperInquiryTest, TellsTheVersionOfOneThatDoesNotSayThatItResponds) {
  start();
  helper().replyVersion("0.9");
  queue_.advance(5s);
  EXPECT_EQ(end(), State::silent);
  EXPECT_EQ(ends_[0].version, "0.9");
}

TEST_F(HelperInquiryTest, TheFiveSecondsAreRealInAFasterRun) {
  question_.speed = 20;
  start();
  queue_.advance(99s);
  EXPECT_EQ(end(), std::nullopt);
  queue_.advance(1s);
  EXPECT_EQ(end(), State::silent);
}

TEST_F(HelperInquiryTest, TakesNoSampleOfAHelperThatAnswersNo) {
  start();
  answer(false, "1.0");
  EXPECT_EQ(end(), State::answersNo);
  EXPECT_EQ(messages(), (Lines{"isResponding", "getVersion"}));
}

TEST_F(HelperInquiryTest, TakesNoSampleOfAnotherVersion) {
  start();
  answer(true, "0.9");
  EXPECT_EQ(end(), State::outOfDate);
  EXPECT_EQ(ends_[0].version, "0.9");
  EXPECT_EQ(messages(), (Lines{"isResponding", "getVersion"}));
}

TEST_F(HelperInquiryTest, EveryVersionIsAnotherWhereTheAppEmbedsNone) {
  question_.expectedVersion = std::nullopt;
  startWithUsableHelper();
  EXPECT_EQ(end(), State::outOfDate);
}

TEST_F(HelperInquiryTest, TheOrderOfTheTwoAnswersDoesNotMatter) {
  start();
  helper().replyVersion("1.0");
  queue_.run();
  helper().replyIsResponding(true);
  queue_.run();
  send(base::Bytes{'x'});
  EXPECT_EQ(end(), State::serves);
}

TEST_F(HelperInquiryTest, FindsAHelperThatIsLost) {
  startWithUsableHelper();
  helper().interrupt();
  queue_.run();
  EXPECT_EQ(end(), State::lost);
  EXPECT_EQ(ends_[0].version, "1.0");
}

TEST_F(HelperInquiryTest, WaitsForTheSampleFiveSecondsLongerThanItsPeriod) {
  question_.msSampling = 1000;
  start();
  queue_.advance(4s);  // the limit of the questions is over before that of the sample
  answer(true, "1.0");
  queue_.advance(5999ms);
  EXPECT_EQ(end(), std::nullopt);
  queue_.advance(1ms);
  EXPECT_EQ(end(), State::givesNoSample);
}

TEST_F(HelperInquiryTest, FindsARunWithoutADocument) {
  startWithUsableHelper();
  send(std::nullopt);
  EXPECT_EQ(end(), State::givesNoDocument);
  EXPECT_TRUE(documents_.empty());
}

TEST_F(HelperInquiryTest, AsksForOneSampleWhenAnAnswerComesTwice) {
  startWithUsableHelper();
  messages();
  answer(true, "1.0");
  EXPECT_EQ(messages(), Lines());
  EXPECT_EQ(end(), std::nullopt);
}

TEST_F(HelperInquiryTest, HearsOneResultAlone) {
  startWithUsableHelper();
  helper().sendResult(base::Bytes{'x'});
  helper().sendResult(base::Bytes{'y'});
  queue_.run();
  EXPECT_EQ(end(), State::serves);
  EXPECT_EQ(documents_.size(), 1u);
}

TEST_F(HelperInquiryTest, AResultThatNobodyAskedForHasNoTime) {
  start();
  send(base::Bytes{'x'});
  EXPECT_EQ(end(), State::serves);
  EXPECT_EQ(ends_[0].answerTime, std::nullopt);
}

TEST_F(HelperInquiryTest, EndsItsConnectionAndIsNotToldOfThat) {
  startWithUsableHelper();
  const auto connection = connector_.latest();
  send(base::Bytes{'x'});
  EXPECT_TRUE(connection->isInvalidated());
  EXPECT_FALSE(connection->hasHandlers());
  EXPECT_EQ(connection->exportedObject(), nullptr);
  EXPECT_EQ(end(), State::serves);
}

TEST_F(HelperInquiryTest, EndsWhenTheUserWouldNotWait) {
  start();
  inquiry_->stop();
  EXPECT_EQ(end(), State::notWaitedFor);
  queue_.advance(1min);
  EXPECT_EQ(ends_.size(), 1u);
}

TEST_F(HelperInquiryTest, OneThatIsGoneIsNotCalled) {
  start();
  inquiry_.reset();
  answer(true, "1.0");
  queue_.advance(1min);
  EXPECT_TRUE(ends_.empty());
}

}  // namespace
}  // namespace pallimo::app
