// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <future>
#include <limits>
#include <map>
#include <regex>
#include <string>
#include <system_error>
#include <vector>

#include "end_to_end/helper_fixture.h"

// The real helper in a state folder of its own, the real stand-in for powermetrics, and the app's
// end of the link.

namespace pallimo::end_to_end {
namespace {

using namespace std::chrono_literals;

using HelperProcessTest = HelperTest;

TEST_F(HelperProcessTest, IsStartedByTheFirstClient) {
  EXPECT_FALSE(helperIfThere());
  Client client(connector);
  EXPECT_TRUE(client.isAnswered());
  EXPECT_TRUE(helperIfThere());
}

TEST_F(HelperProcessTest, AnswersWithItsVersion) {
  Client client(connector);
  EXPECT_TRUE(std::regex_match(client.version(), std::regex(R"(\d+\.\d+\.\d+)")));
}

TEST_F(HelperProcessTest, SendsADocument) {
  Client client(connector);
  client.request(50);
  const auto results = client.results(1);
  ASSERT_EQ(results.size(), 1U);
  EXPECT_EQ(results[0].substr(0, 5), "<?xml");
  EXPECT_NE(results[0].find("<key>processor</key>"), std::string::npos);
  EXPECT_EQ(results[0].find("<key>gpu</key>"), std::string::npos);
}

TEST_F(HelperProcessTest, SendsTheGpuOnRequest) {
  Client client(connector);
  client.request(50, true);
  const auto results = client.results(1);
  ASSERT_EQ(results.size(), 1U);
  EXPECT_NE(results[0].find("<key>gpu</key>"), std::string::npos);
}

TEST_F(HelperProcessTest, AnswersInTheOrderOfTheRequests) {
  Client client(connector);
  client.request(400);
  client.request(std::numeric_limits<double>::quiet_NaN());
  client.request(1, true);
  const auto results = client.results(3);
  ASSERT_EQ(results.size(), 3U);
  EXPECT_EQ(results[0].find("<key>gpu</key>"), std::string::npos);
  EXPECT_EQ(results[1], "(absent)");
  EXPECT_NE(results[2].find("<key>gpu</key>"), std::string::npos);
}

TEST_F(HelperProcessTest, SendsAnAbsentDocumentWhenTheToolFails) {
  fs::remove(folder.simulationFile());
  Client client(connector);
  client.request(50);
  EXPECT_EQ(client.results(1), std::vector<std::string>{"(absent)"});
}

TEST_F(HelperProcessTest, RunsSixtyFourSideBySideAndNoMore) {
  Client client(connector);
  for (int i = 0; i < 70; ++i) client.request(kHour);
  ASSERT_TRUE(client.isAnswered());
  EXPECT_EQ(helper().children().size(), 64U);
}

TEST_F(HelperProcessTest, StartsTheToolWithItsArgumentsAndNothingElse) {
  Client client(connector);
  const auto run = longRun(client);
  const auto words = [](std::string text) {
    std::replace(text.begin(), text.end(), '\0', '\n');
    return text;
  };
  // The kernel fills in the environment last.
  EXPECT_EQ(words(contentsOnceThere(run.folder() / "environ")),
            "PATH=/usr/bin:/bin:/usr/sbin:/sbin\nPALLIMO_SIMULATION=" + folder.simulationFile() +
                "\nPALLIMO_REQUEST=1\n");
  EXPECT_EQ(words(contents(run.folder() / "cmdline")),
            std::string(PALLIMO_BIN_DIR) +
                "/powermetrics\n-n\n1\n-i\n3600000\n-f\nplist\n--samplers\ncpu_power,ane_power\n");
}

TEST_F(HelperProcessTest, LendsTheToolAPipeAndNoOtherDescriptor) {
  Client client(connector);
  const auto run = longRun(client);
  // The tool may be opening files of its own at this moment.
  std::map<std::string, int> kinds;
  for (const auto& entry : fs::directory_iterator(run.folder() / "fd")) {
    std::error_code hasClosed;
    const std::string target = fs::read_symlink(entry.path(), hasClosed);
    ++kinds[target.substr(0, target.find(':'))];
  }
  EXPECT_EQ(kinds["/dev/null"], 2);
  EXPECT_EQ(kinds["pipe"], 1);
  EXPECT_EQ(kinds["socket"], 0);
  EXPECT_EQ(kinds["anon_inode"], 0);
  EXPECT_EQ(kinds[folder.helperLock()], 0);
}

TEST_F(HelperProcessTest, EndsTheRunsOfAClientThatGoes) {
  Client stays(connector);
  ASSERT_TRUE(stays.isAnswered());
  Client client(connector);
  const auto run = longRun(client);
  client.drop();
  EXPECT_TRUE(run.ends());
  EXPECT_TRUE(stays.isAnswered());
}

TEST_F(HelperProcessTest, LeavesNoRunBehindWhenItIsKilled) {
  Client client(connector);
  const auto run = longRun(client);
  helper().send(SIGKILL);
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(run.ends());
}

TEST_F(HelperProcessTest, LeavesNeitherRunNorSocketWhenItIsTerminated) {
  Client client(connector);
  const auto run = longRun(client);
  const auto process = helper();
  process.send(SIGTERM);
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(run.ends());
  EXPECT_TRUE(process.ends());
  EXPECT_FALSE(fs::exists(folder.helperSocket()));
}

TEST_F(HelperProcessTest, IsReplacedAfterItWasKilled) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  helper().send(SIGKILL);
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(Client(connector).isAnswered());
}

TEST_F(HelperProcessTest, StoppedForLongerThanEveryLimitOfItsOwnItAnswersEverythingInOrder) {
  Client client(connector);
  client.request(400);
  client.request(std::numeric_limits<double>::infinity());
  ASSERT_TRUE(client.isAnswered());
  const auto process = helper();
  process.send(SIGSTOP);
  client.request(1, true);
  EXPECT_FALSE(process.endsWithin(6s));  // five are what it gives clients, and stays without any
  process.send(SIGCONT);
  const auto results = client.results(3);
  ASSERT_EQ(results.size(), 3U);
  EXPECT_EQ(results[0].substr(0, 5), "<?xml");
  EXPECT_EQ(results[1], "(absent)");
  EXPECT_NE(results[2].find("<key>gpu</key>"), std::string::npos);
}

TEST_F(HelperProcessTest, TwoAppsThatStartAtOnceShareOneHelper) {
  base::SerialThread otherDelivery;
  adapters::linux::DBusHelperConnector other(otherDelivery, folder,
                                             adapters::linux::HelperLauncher(folder));
  for (int round = 0; round < 20; ++round) {
    Client one(connector);
    Client two(other);
    auto isOtherAnswered = std::async(std::launch::async, [&two] { return two.isAnswered(); });
    ASSERT_TRUE(one.isAnswered()) << round;
    ASSERT_TRUE(isOtherAnswered.get()) << round;
    const auto process = helper();
    process.send(SIGKILL);  // both were its clients
    EXPECT_EQ(one.loss(), "interrupted");
    EXPECT_EQ(two.loss(), "interrupted");
  }
}

TEST_F(HelperProcessTest, EndsSomeTimeAfterItsLastClientHasGone) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  const auto process = helper();
  client.drop();
  EXPECT_TRUE(process.ends());
  EXPECT_FALSE(fs::exists(folder.helperSocket()));
}

TEST_F(HelperProcessTest, EndsWhenToldToClose) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  const auto process = helper();
  client.helper()->closeHelper();
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(process.ends());
  EXPECT_TRUE(fs::exists(folder.installedHelper()));
}

TEST_F(HelperProcessTest, ServesOthersAfterItWasToldToClose) {
  Client other(connector);
  ASSERT_TRUE(other.isAnswered());
  const auto process = helper();
  Client client(connector);
  client.helper()->closeHelper();
  EXPECT_EQ(client.loss(), "interrupted");
  other.request(50);
  EXPECT_EQ(other.results(1).size(), 1U);
  other.drop();
  EXPECT_TRUE(process.ends());
}

TEST_F(HelperProcessTest, RemovesItselfWhenToldToUninstall) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  const auto process = helper();
  client.helper()->unInstallHelper();
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(process.ends());
  EXPECT_FALSE(fs::exists(folder.installedHelper()));
  Client next(connector);
  EXPECT_EQ(next.loss(), "invalidated");
}

/// The exit status of a helper that was started by hand; -1 when it did not end by itself.
int statusOf(std::string path, std::string argument = "") {
  char* const arguments[] = {path.data(), argument.empty() ? nullptr : argument.data(), nullptr};
  char* const environment[] = {nullptr};
  pid_t started = 0;
  if (posix_spawn(&started, path.c_str(), nullptr, nullptr, arguments, environment) != 0) return -1;
  int status = -1;
  if (waitpid(started, &status, 0) != started || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

TEST_F(HelperProcessTest, EndsQuietlyBesideAnotherHelper) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  EXPECT_EQ(statusOf(folder.installedHelper()), 0);
  EXPECT_TRUE(client.isAnswered());
}

TEST_F(HelperProcessTest, DoesNotServeFromWhereNoHelperIsInstalled) {
  EXPECT_EQ(statusOf(kEmbeddedHelper), 1);
}

TEST_F(HelperProcessTest, AnswersPeopleWithoutServing) {
  EXPECT_EQ(statusOf(folder.installedHelper(), "--version"), 0);
  EXPECT_EQ(statusOf(folder.installedHelper(), "--help"), 0);
  EXPECT_EQ(statusOf(folder.installedHelper(), "--serve"), 2);
  EXPECT_FALSE(fs::exists(folder.helperLock()));
}

TEST_F(HelperProcessTest, SleepsBetweenRequests) {
  Client client(connector);
  client.request(10);
  ASSERT_EQ(client.results(1).size(), 1U);
  ASSERT_TRUE(client.isAnswered());
  const auto process = helper();
  ASSERT_TRUE(client.isAnswered());  // the look at the socket has been dealt with
  const long before = process.number("voluntary_ctxt_switches");
  EXPECT_FALSE(process.endsWithin(1s));
  EXPECT_LE(process.number("voluntary_ctxt_switches") - before, 2);
}

TEST_F(HelperProcessTest, KeepsNoDescriptorOfFinishedRunsAndGoneClients) {
  simulate(100);
  Client client(connector);
  const auto descriptors = [this, &client] {
    const auto process = helper();
    EXPECT_TRUE(client.isAnswered());
    return std::distance(fs::directory_iterator(process.folder() / "fd"), {});
  };
  ASSERT_TRUE(client.isAnswered());
  const auto before = descriptors();
  for (int round = 0; round < 20; ++round) {
    Client brief(connector);
    for (int i = 0; i < 5; ++i) brief.request(10);
    ASSERT_EQ(brief.results(5).size(), 5U);
  }
  // The last client's end, and that of the last run, may reach the helper after our question.
  const auto deadline = std::chrono::steady_clock::now() + 30s;
  auto after = descriptors();
  while (after > before && std::chrono::steady_clock::now() < deadline) after = descriptors();
  EXPECT_LE(after, before);
  EXPECT_TRUE(helper().children().empty());
}

TEST_F(HelperProcessTest, NeverMeetsAClientWhileItIsEnding) {
  for (int round = 0; round < 1000; ++round) {
    Client client(connector);
    ASSERT_TRUE(client.isAnswered()) << "round " << round << ": " << client.loss();
    if (round % 3 == 0) client.helper()->closeHelper();
  }
}

}  // namespace
}  // namespace pallimo::end_to_end
