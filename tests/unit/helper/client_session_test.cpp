// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/client_session.h"

#include <optional>

#include "unit/helper/helper_service_fixture.h"

namespace pallimo::helper {
namespace {

class ClientSessionTest : public HelperServiceTest {
 protected:
  fakes::FakeHelperClient client = listener.connect();
};

TEST_F(ClientSessionTest, AnswersThatItResponds) {
  std::optional<bool> answer;
  client.helper->isResponding([&answer](bool isResponding) { answer = isResponding; });
  EXPECT_EQ(answer, true);
}

TEST_F(ClientSessionTest, AnswersWithTheHelpersVersion) {
  std::string answer;
  client.helper->getVersion([&answer](const std::string& version) { answer = version; });
  EXPECT_EQ(answer, "1.2.3");
}

TEST_F(ClientSessionTest, RunsOneProcessARequest) {
  request(client);
  request(client);
  EXPECT_EQ(children.running(), 2U);
}

TEST_F(ClientSessionTest, PassesThePeriodAndTheGpuOn) {
  client.helper->requestPowermetrics(2500, true);
  const std::vector<std::string> expected = {
      "-n", "1", "-i", "2500", "-f", "plist", "--samplers", "cpu_power,gpu_power,ane_power"};
  EXPECT_EQ(children.command(0).arguments, expected);
}

TEST_F(ClientSessionTest, SendsTheDocumentBack) {
  request(client);
  EXPECT_EQ(client.results(), Results{});
  children.print(0, "first");
  EXPECT_EQ(client.results(), Results{"first"});
}

TEST_F(ClientSessionTest, SendsAnAbsentDocumentWhenTheRunFails) {
  request(client);
  children.finish(0, {ports::ChildOutcome::End::exited, 1, {}});
  EXPECT_EQ(client.results(), Results{kAbsent});
}

TEST_F(ClientSessionTest, SendsAnAbsentDocumentForARefusedRequest) {
  client.helper->requestPowermetrics(0, false);
  EXPECT_EQ(client.results(), Results{kAbsent});
  EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(ClientSessionTest, SendsResultsInTheOrderOfTheRequests) {
  for (int i = 0; i < 3; ++i) request(client);
  children.print(2, "third");
  children.print(1, "second");
  EXPECT_EQ(client.results(), Results{});
  children.print(0, "first");
  EXPECT_EQ(client.results(), (Results{"first", "second", "third"}));
}

TEST_F(ClientSessionTest, LetsAbsentResultsKeepTheirTurn) {
  request(client);
  client.helper->requestPowermetrics(-1, false);
  client.helper->requestPowermetrics(-1, false);
  request(client);
  children.finish(1, {ports::ChildOutcome::End::timedOut, 0, {}});
  EXPECT_EQ(client.results(), Results{});
  children.print(0, "first");
  EXPECT_EQ(client.results(), (Results{"first", kAbsent, kAbsent, kAbsent}));
}

TEST_F(ClientSessionTest, HoldsNoResultBackForARunThatIsNotBeforeIt) {
  request(client);
  request(client);
  children.print(0, "first");
  EXPECT_EQ(client.results(), Results{"first"});
}

TEST_F(ClientSessionTest, KeepsTheOrderOfEachClientApart) {
  const auto other = listener.connect();
  request(client);
  request(other);
  children.print(1, "other");
  EXPECT_EQ(other.results(), Results{"other"});
  EXPECT_EQ(client.results(), Results{});
}

TEST_F(ClientSessionTest, AnswersEveryRequestBeyondTheLimit) {
  for (int i = 0; i < 200; ++i) request(client);
  EXPECT_EQ(children.running(), 64U);
  EXPECT_EQ(log.lines().size(), 1U);
  for (std::size_t i = 0; i < 64; ++i) children.print(i, "document");
  ASSERT_EQ(client.results().size(), 200U);
  EXPECT_EQ(client.results()[63], "document");
  EXPECT_EQ(client.results()[64], kAbsent);
  EXPECT_EQ(client.results()[199], kAbsent);
}

/// A client that has sent a run and then as many requests that are refused.
class ClientSessionBatchTest : public ClientSessionTest {
 protected:
  void refuse(int count) {
    for (int i = 0; i < count; ++i) client.helper->requestPowermetrics(0, false);
  }
  std::size_t sent() const { return client.results().size(); }
};

TEST_F(ClientSessionBatchTest, AnswersNoMoreThanABatchBeforeTheQueueGetsATurn) {
  request(client);
  refuse(1000);
  children.print(0, "first");
  EXPECT_EQ(sent(), 1U + 256U);
  EXPECT_EQ(mainQueue.queuedTasks(), 1U);
  mainQueue.run();
  EXPECT_EQ(sent(), 1U + 1000U);
}

TEST_F(ClientSessionBatchTest, LetsWhatIsQueuedComeBetweenTwoBatches) {
  std::vector<std::size_t> sentBefore;
  request(client);
  refuse(600);
  children.print(0, "first");
  for (int i = 0; i < 2; ++i) mainQueue.async([&] { sentBefore.push_back(sent()); });
  mainQueue.run();
  EXPECT_EQ(sentBefore, (std::vector<std::size_t>{513, 513}));
  EXPECT_EQ(sent(), 601U);
}

TEST_F(ClientSessionBatchTest, KeepsTheOrderAcrossBatches) {
  request(client);
  refuse(300);
  request(client);
  refuse(300);
  children.print(1, "second");
  children.print(0, "first");
  mainQueue.run();
  Results expected(602, kAbsent);
  expected[0] = "first";
  expected[301] = "second";
  EXPECT_EQ(client.results(), expected);
}

TEST_F(ClientSessionBatchTest, HoldsALaterRunBackUntilTheRefusedBeforeItAreAnswered) {
  request(client);
  refuse(300);
  request(client);
  children.print(0, "first");
  children.print(1, "second");
  EXPECT_EQ(sent(), 257U);
  mainQueue.run();
  ASSERT_EQ(sent(), 302U);
  EXPECT_EQ(client.results().back(), "second");
}

TEST_F(ClientSessionBatchTest, PutsRequestsThatAreRefusedMeanwhileBehind) {
  request(client);
  refuse(300);
  children.print(0, "first");
  refuse(50);
  EXPECT_EQ(sent(), 257U);
  mainQueue.run();
  EXPECT_EQ(sent(), 351U);
}

TEST_F(ClientSessionBatchTest, StopsWhenTheClientGoes) {
  request(client);
  refuse(1000);
  children.print(0, "first");
  listener.disconnect(client);
  mainQueue.run();
  EXPECT_EQ(sent(), 257U);
}

TEST_F(ClientSessionTest, SharesTheLimitWithOtherClients) {
  const auto other = listener.connect();
  for (int i = 0; i < 64; ++i) request(other);
  request(client);
  EXPECT_EQ(client.results(), Results{kAbsent});
}

TEST_F(ClientSessionTest, EndsItsRunsWhenTheClientGoes) {
  request(client);
  request(client);
  listener.disconnect(client);
  EXPECT_EQ(children.running(), 0U);
}

TEST_F(ClientSessionTest, LeavesTheRunsOfOthersAloneWhenTheClientGoes) {
  const auto other = listener.connect();
  request(client);
  request(other);
  listener.disconnect(client);
  EXPECT_FALSE(children.isRunning(0));
  EXPECT_TRUE(children.isRunning(1));
}

TEST_F(ClientSessionTest, SendsNothingToAClientThatIsGone) {
  request(client);
  request(client);
  children.print(1, "second");
  listener.disconnect(client);
  children.print(0, "first");
  EXPECT_EQ(client.results(), Results{});
}

TEST_F(ClientSessionTest, StartsNothingForAClientThatIsGone) {
  listener.disconnect(client);
  request(client);
  client.helper->closeHelper();
  client.helper->unInstallHelper();
  EXPECT_EQ(children.count(), 0U);
  EXPECT_EQ(files.removals, 0);
  EXPECT_TRUE(listener.isListening);
}

TEST_F(ClientSessionTest, AnswersNoQuestionOfAClientThatIsGone) {
  listener.disconnect(client);
  client.helper->isResponding([](bool) { ADD_FAILURE(); });
  client.helper->getVersion([](const std::string&) { ADD_FAILURE(); });
}

TEST_F(ClientSessionTest, MayOutliveTheService) {
  request(client);
  service->end();
  service.reset();
  client.helper->closeHelper();
  request(client);
  EXPECT_EQ(children.running(), 0U);
}

/// The numbers of the requests, as the stand-in for powermetrics gets them.
class ClientSessionNumberTest : public ClientSessionTest {
 protected:
  ClientSessionNumberTest() {
    PowermetricsTool tool;
    tool.path = "/stand-in";
    tool.environment = [this](std::uint64_t number) {
      numbers.push_back(number);
      return std::vector<std::string>{};
    };
    counting = std::make_unique<PowermetricsRuns>(PowermetricsRuns::Services{children, log}, tool);
    first = session();
    second = session();
  }
  ~ClientSessionNumberTest() override {
    first->end();
    second->end();
  }

  std::shared_ptr<ClientSession> session() {
    return std::make_shared<ClientSession>(ClientSession::Services{mainQueue, *counting, {}}, "",
                                           std::make_shared<fakes::FakeHelperPeer>());
  }

  std::vector<std::uint64_t> numbers;
  std::unique_ptr<PowermetricsRuns> counting;
  std::shared_ptr<ClientSession> first;
  std::shared_ptr<ClientSession> second;
};

TEST_F(ClientSessionNumberTest, CountFromOne) {
  first->requestPowermetrics(1000, false);
  first->requestPowermetrics(1000, false);
  EXPECT_EQ(numbers, (std::vector<std::uint64_t>{1, 2}));
}

TEST_F(ClientSessionNumberTest, CountRefusedRequestsToo) {
  first->requestPowermetrics(1000, false);
  first->requestPowermetrics(0, false);
  first->requestPowermetrics(1000, false);
  EXPECT_EQ(numbers, (std::vector<std::uint64_t>{1, 3}));
}

TEST_F(ClientSessionNumberTest, BeginAgainWithEachConnection) {
  first->requestPowermetrics(1000, false);
  second->requestPowermetrics(1000, false);
  EXPECT_EQ(numbers, (std::vector<std::uint64_t>{1, 1}));
}

}  // namespace
}  // namespace pallimo::helper
