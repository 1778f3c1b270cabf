// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/diagnosis.h"
#include "unit/app/diagnosis/diagnosis_fixture.h"

// What a diagnosis finds where something is missing or does not answer, and what it leaves alone.

namespace pallimo::app {
namespace {

using namespace std::chrono_literals;

using DiagnosisOfTrouble = DiagnosisTest;

TEST_F(DiagnosisOfTrouble, AnAbsentHelper) {
  fakes_.helperConnector.setFailsAtOnce(true);
  start();
  EXPECT_EQ(section("Helper"),
            "state                   absent: not installed, or it can't be started\n"
            "version                 not told\n"
            "embedded version        1.0\n");
  EXPECT_EQ(section("Document"), "none\n");
  EXPECT_TRUE(says("  model                   Mac14,9\n"));
}

TEST_F(DiagnosisOfTrouble, ASilentHelperInFiveSeconds) {
  start();
  queue().advance(4999ms);
  EXPECT_TRUE(ends_.empty());
  queue().advance(1ms);
  EXPECT_TRUE(says("  state                   silent: no answer within 5 seconds\n"));
}

TEST_F(DiagnosisOfTrouble, AHelperOfAnotherVersion) {
  start();
  helperAnswers("0.9");
  EXPECT_EQ(section("Helper"),
            "state                   out of date: its version is not the embedded one's\n"
            "version                 0.9\n"
            "embedded version        1.0\n");
}

TEST_F(DiagnosisOfTrouble, AnAppThatEmbedsNoHelper) {
  fakes_.bundle.embedHelper(std::nullopt);
  start();
  helperAnswers();
  EXPECT_TRUE(says("  embedded version        none\n"));
}

TEST_F(DiagnosisOfTrouble, AHelperThatAnswersNo) {
  start();
  helper().replyIsResponding(false);
  helper().replyVersion("1.0");
  queue().run();
  EXPECT_TRUE(says("  state                   answers NO\n"));
}

TEST_F(DiagnosisOfTrouble, AHelperThatIsLost) {
  start();
  helper().interrupt();
  queue().run();
  EXPECT_TRUE(says("  state                   lost: it ended while it was asked\n"));
}

TEST_F(DiagnosisOfTrouble, ARunThatGivesNothing) {
  start();
  helperAnswers();
  helper().sendResult(std::nullopt);
  queue().run();
  EXPECT_TRUE(says("  state                   answers, but powermetrics gave no document\n"));
  EXPECT_EQ(section("Document"), "none\n");
}

TEST_F(DiagnosisOfTrouble, ARunThatDoesNotEnd) {
  start();
  helperAnswers();
  queue().advance(5500ms);
  EXPECT_TRUE(
      says("  state                   answers, but sends no sample within 5 seconds and the "
           "period\n"));
}

TEST_F(DiagnosisOfTrouble, AUserWhoWouldNotWait) {
  start();
  diagnosis_->interrupt();
  queue().run();
  EXPECT_TRUE(says("  state                   not waited for: interrupted\n"));
}

TEST_F(DiagnosisOfTrouble, AnotherProcessorWhoseHelperIsNotAsked) {
  fakes_.setCpuType(7);
  start();
  EXPECT_TRUE(says("  processor               x86\n"));
  EXPECT_EQ(section("Temperature"), "source                  not asked on this processor\n");
  EXPECT_EQ(section("Helper"), "state                   not asked on this processor\n");
  EXPECT_EQ(fakes_.helperConnector.count(), 0u);
}

TEST_F(DiagnosisOfTrouble, AMachineThatDoesNotTellItsModel) {
  fakes_.systemControls.setBytes("hw.model", {'M'});  // no end
  diagnose();
  EXPECT_TRUE(says("  model                   can't be read\n"));
  EXPECT_EQ(section("Temperature"), "source                  can't be read\n");
  EXPECT_EQ(section("Settings"),
            "sampling period         not read\n"
            "GPU frequency           not measured\n");
  EXPECT_TRUE(says("  from result to row      not measured\n"));
  EXPECT_TRUE(says("  E-Cluster               1500 MHz, CPUs 0\n"));
}

TEST_F(DiagnosisOfTrouble, ASystemWithoutAHidClient) {
  fakes_.systemControls.setText("hw.model", "Macmini9,1");
  fakes_.hidSensors.setMakesClients(false);
  diagnose();
  EXPECT_EQ(section("Temperature"), "source                  can't be read\n");
}

TEST_F(DiagnosisOfTrouble, ASystemWithoutAHidClientIsNoneOfTheSmcs) {
  fakes_.hidSensors.setMakesClients(false);
  diagnose();
  EXPECT_EQ(section("Temperature").substr(0, 28), "source                  SMC\n");
  EXPECT_EQ(fakes_.hidSensors.takeCalls(), std::vector<std::string>{});
  EXPECT_FALSE(says("not read"));
}

TEST_F(DiagnosisOfTrouble, AnAcceleratorThatNeverAnswers) {
  fakes_.accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", 20), 1'000'000);
  diagnose();
  EXPECT_TRUE(
      says("  GPU                     none of Apple's with statistics\n"
           "  accelerators            can't be read\n"));
}

TEST_F(DiagnosisOfTrouble, ADiskThatIsFullIsStatus1) {
  output_.state = ports::StandardOutput::State::failed;
  diagnose();
  EXPECT_EQ(ends_,
            (std::vector<RunEnd>{{1, "can't write to standard output: No space left on device"}}));
}

TEST_F(DiagnosisOfTrouble, AReaderThatIsGoneIsStatus0) {
  output_.state = ports::StandardOutput::State::closed;
  diagnose();
  EXPECT_EQ(ends_, std::vector<RunEnd>{RunEnd{}});
}

using DiagnosisLeavesAlone = DiagnosisTest;

TEST_F(DiagnosisLeavesAlone, TheHelper) {
  diagnose();
  queue().advance(1min);
  EXPECT_EQ(messages(), (std::vector<std::string>{"isResponding", "getVersion",
                                                  "requestPowermetrics 500.000000"}));
}

TEST_F(DiagnosisLeavesAlone, TheInstallation) {
  fakes_.helperInstaller.onCall = [](const std::string& call) {
    ADD_FAILURE() << "the installer was asked: " << call;
  };
  fakes_.helperConnector.setFailsAtOnce(true);
  start();
  EXPECT_EQ(fakes_.console.lines(), std::vector<std::string>());
}

TEST_F(DiagnosisLeavesAlone, TheSettings) {
  const auto change = fakes_.defaults.observeChanges([] { ADD_FAILURE() << "a setting changed"; });
  diagnose();
}

TEST_F(DiagnosisLeavesAlone, TheAnalyticsServer) {
  diagnose();
  EXPECT_TRUE(fakes_.desktop.analyticsClient.takeSent().empty());
}

/// Texts that would tell who uses the machine, wherever a report's figures come from.
using DiagnosisKeepsPrivate = DiagnosisTest;

TEST_F(DiagnosisKeepsPrivate, WhoeverUsesTheMachine) {
  settings_.privateWords = {"wilhelmina", "/Users/wilhelmina", "minas-desk"};
  const std::string serial = "C02XG0FDH7JY";
  const auto text = [](const std::string& value) { return "<string>" + value + "</string>"; };
  fakes_.systemControls.setText("hw.model", "Mac14,9 of Wilhelmina");
  fakes_.systemControls.setText("machdep.cpu.brand_string", "Apple M2 " + serial);
  fakes_.systemControls.setText("kern.osversion", "minas-desk");
  fakes_.systemControls.setText("kern.hostname", "minas-desk");
  fakes_.desktop.processInformation.setOperatingSystemVersionString("14.5 /Users/wilhelmina/x");
  fakes_.accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("GPU of wilhelmina", 20));
  fakes_.defaults.setText("pathFolderLocation", "/Users/wilhelmina/Logs");
  fakes_.defaults.setText("reference", serial);
  fakes_.bundle.embedHelper("wilhelmina-1.0");
  fakes_.programLauncher.setOutput(
      "/usr/sbin/system_profiler -xml SPDisplaysDataType",
      R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array><dict><key>_items</key>
         <array><dict><key>sppci_cores</key><string>minas-desk</string><key>serial</key>)" +
          text(serial) + "</dict></array></dict></array></plist>");
  start();
  helperAnswers("wilhelmina-1.0");
  helperSends(R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>
      <key>hostname</key>)" +
              text("minas-desk") + "<key>/Users/wilhelmina/Documents</key>" + text(serial) +
              "<key>" + serial +
              "</key><true/><key>wilhelmina</key><true/><key>processor</key>"
              "<dict><key>clusters</key><array><dict><key>name</key>" +
              text("wilhelminas-Cluster") + "</dict><dict><key>name</key>" + text(serial) +
              "</dict></array></dict></dict></plist>");
  for (const std::string word :
       {"wilhelmina", "Wilhelmina", "minas-desk", "Users", "Documents", "Logs", "C02XG0"}) {
    EXPECT_FALSE(says(word)) << word << " stands in\n" << report();
  }
  EXPECT_TRUE(says("  model                   Mac14,9 of (hidden)\n"));
  EXPECT_TRUE(says("  (hidden)s-Cluster       no frequency, no CPUs\n"));
  EXPECT_TRUE(says("  state                   serves\n"));
}

}  // namespace
}  // namespace pallimo::app
