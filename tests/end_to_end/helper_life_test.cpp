// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "end_to_end/helper_life.h"

// The helper installed, checked and updated, and every fault that can be planned.

namespace pallimo::end_to_end {
namespace {

// The first start.

using FirstStart = HelperLife;

TEST_F(FirstStart, WithTheInstallButtonInstallsAndSamples) {
  const auto app = startHeadless(pressing(samples(3)));
  expectSamples(*app, 3);
  EXPECT_EQ(presses(*app), 1u);
  EXPECT_EQ(textOf(helperPath()), textOf(embeddedHelper()));
  EXPECT_EQ(fs::status(helperPath()).permissions(), fs::perms(0755));
  expectNothingLeft();
}

TEST_F(FirstStart, WithoutTheButtonIsStatus3AndInstallsNothing) {
  const auto app = startHeadless(samples(3));
  expectNotUsable(*app);
  EXPECT_EQ(presses(*app), 0u);
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

TEST_F(FirstStart, TwoAppsInFoldersOfTheirOwnInstallAHelperEach) {
  Texts first = pressing(endlessAt("5"));
  first.insert(first.end(), {"--machine", recording({drawing(1000)}, 0x0100000C, "one")});
  Texts second = pressing(endlessAt("5"));
  second.insert(second.end(), {"--machine", recording({drawing(2000)}, 0x0100000C, "two")});
  const auto one = startHeadless(first, "state");
  const auto other = startHeadless(second, "other");
  ASSERT_EQ(one->readLines(3).size(), 3u);
  ASSERT_EQ(other->readLines(3).size(), 3u);
  EXPECT_FALSE(fs::equivalent(helperPath("state"), helperPath("other")));
  const auto helper = helpersOf("state");
  const auto otherHelper = helpersOf("other");
  ASSERT_EQ(helper.size(), 1u);
  ASSERT_EQ(otherHelper.size(), 1u);

  // One loses its helper and gets another; the other app notices nothing.
  helper[0].send(SIGKILL);
  ASSERT_TRUE(waitForPresses(*one, 2));
  for (const std::string& line : one->readLines(5)) EXPECT_EQ(columnsOf(line)[2], "1.000") << line;
  const Texts rows = other->readLines(5);
  EXPECT_EQ(rows.size(), 5u);
  for (const std::string& line : rows) EXPECT_EQ(columnsOf(line)[2], "2.000") << line;
  EXPECT_EQ(presses(*other), 1u);
  EXPECT_FALSE(otherHelper[0].isGoneInTime(std::chrono::milliseconds(0)));
  for (AppProcess* app : {one.get(), other.get()}) {
    app->send(SIGTERM);
    EXPECT_EQ(app->exitStatus(), 0);
  }
  expectNothingLeft("state");
  expectNothingLeft("other");
}

// A helper that is there.

using Versions = HelperLife;

TEST_F(Versions, TheSameOneSamplesWithoutAPress) {
  installHelper();
  const auto app = startHeadless(pressing(samples(3)));
  expectSamples(*app, 3);
  EXPECT_EQ(app->errorText(), "");
  expectNothingLeft();
}

TEST_F(Versions, AnOlderOneIsStatus4WithoutTheButtonAndStays) {
  installOlderHelper();
  const std::string older = textOf(helperPath());
  const auto app = startHeadless(samples(3));
  expectOutOfDate(*app);
  EXPECT_EQ(presses(*app), 0u);
  EXPECT_EQ(textOf(helperPath()), older);
  expectNothingLeft();
}

TEST_F(Versions, AnOlderOneIsUpdatedWithTheButtonAndSamples) {
  installOlderHelper();
  // However late the old one goes: the install screen that this may show is pressed as well.
  const auto app = startHeadless(pressing(samplesAt("5", 3)));
  expectSamples(*app, 3);
  EXPECT_EQ(textOf(helperPath()), textOf(embeddedHelper()));
  expectNothingLeft();
  // The next start finds nothing to press.
  const auto next = startHeadless(samples(1));
  expectSamples(*next, 1);
}

TEST_F(Versions, OneThatSaysABlankOrALetterMoreIsStatus4) {
  installHelper();
  const auto shown = start({"--version"});
  std::string version = shown->readAll();
  version = version.substr(version.find(' ') + 1);
  version.pop_back();
  for (const std::string& said :
       {version + " ", " " + version, "v" + version, version + "\\n", std::string()}) {
    planFaults(R"("helperVersion": ")" + said + R"(")");
    const auto app = startHeadless(samples(1));
    expectOutOfDate(*app);
    expectNothingLeft();
  }
}

TEST_F(Versions, OneThatSaysTheRightVersionInsteadOfItsOwnIsTrusted) {
  installOlderHelper();
  const auto shown = start({"--version"});
  std::string version = shown->readAll();
  version = version.substr(version.find(' ') + 1);
  version.pop_back();
  planFaults(R"("helperVersion": ")" + version + R"(")");
  const auto app = startHeadless(samples(1));
  expectSamples(*app, 1);
}

// A helper that is there and does not do what it should.

using Failures = HelperLife;

TEST_F(Failures, AHelperThatIsSilentOrAnswersNoIsStatus3) {
  installHelper();
  planFaults(R"("helperSilent": true)");
  installHelper("other");
  planFaults(R"("helperAnswersNo": true)", "other");
  const auto silent = startHeadless(samples(1));
  const auto saysNo = startHeadless(samples(1), "other");  // both wait for five seconds
  expectNotUsable(*silent);
  expectNotUsable(*saysNo);
  expectNothingLeft();
  expectNothingLeft("other");
}

TEST_F(Failures, ASilentHelperIsStatus3AlsoWithTheButton) {
  installHelper();
  planFaults(R"("helperSilent": true)");
  const auto app = startHeadless(pressing(samples(1)));
  expectEnd(*app, 3,
            "the helper does not answer, 5 seconds after its installation; the system log may say "
            "why");
  EXPECT_GE(presses(*app), 1u);
  expectNothingLeft();
}

TEST_F(Failures, ARefusedAuthorizationStopsTheProgram) {
  planFaults(R"("authorizationStatus": -60005)");
  const auto app = startHeadless(pressing(samples(1)));
  EXPECT_EQ(app->exitStatus(), -SIGABRT);
  EXPECT_EQ(app->readAll(), "");
  const std::string text = app->errorText();
  EXPECT_TRUE(text.ends_with("INSTALL HELPER\nAuthorization not acquired.\n")) << text;
  // Its status goes to the system's log alone.
  EXPECT_EQ(text.find("PWMJBS"), std::string::npos) << text;
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

TEST_F(Failures, ARefusedInstallationIsStatus5AndInstallsNothing) {
  planFaults(R"("blessRefused": true)");
  const auto app = startHeadless(pressing(samples(1)));
  expectRefusal(*app);
  EXPECT_EQ(presses(*app), 1u);
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

TEST_F(Failures, ARefusedUpdateIsStatus5AndLeavesNoHelper) {
  installOlderHelper();
  planFaults(R"("blessRefused": true)");
  const auto app = startHeadless(pressing(samplesAt("5", 1)));
  expectRefusal(*app);
  expectNothingLeft();
  EXPECT_FALSE(fs::exists(helperPath()));  // the old one's last act, after the app's end perhaps
}

TEST_F(Failures, AHelperWhoseToolIsGoneIsStatus7AlsoWithTheButton) {
  installStrandedHelper("without");
  installStrandedHelper("with");
  const std::string before = textOf(helperPath("with"));
  const auto without = startHeadless(samples(3), "without");
  const auto with = startHeadless(pressing(samples(3)), "with");
  for (AppProcess* app : {without.get(), with.get()}) {
    expectEnd(*app, 7,
              "the helper answers, but its powermetrics gives no samples; the system log may say "
              "why, and the window's menu can uninstall the helper");
    EXPECT_EQ(presses(*app), 0u);
  }
  EXPECT_EQ(textOf(helperPath("with")), before);  // its version is right
  expectNothingLeft("without");
  expectNothingLeft("with");
}

TEST_F(Failures, AHelperThatDiesOnARequestIsStatus6) {
  installHelper();
  planFaults(R"("helperDiesOnRequest": 4)");
  const auto app = startHeadless(endlessAt("5"));
  EXPECT_EQ(app->exitStatus(), 6);
  // A header and three rows; the last of them may have been under way.
  const std::size_t lines = app->readLines(100).size();
  EXPECT_GE(lines, 2u);
  EXPECT_LE(lines, 4u);
  expectNothingLeft();
}

TEST_F(Failures, AHelperThatDiesAgainAndAgainIsPutBackWithTheButton) {
  planFaults(R"("helperDiesOnRequest": 5)");
  const auto app = startHeadless(pressing(samplesAt("4", 9)));
  ASSERT_NO_FATAL_FAILURE(expectSamples(*app, 9));
  EXPECT_GE(presses(*app), 3u);  // four rows a life at most
  expectNothingLeft();
}

TEST_F(Failures, FaultsThatCannotBeReadAreOneLineNamingTheKeyAndStatus2) {
  planFaults(R"("helperSilen": true)");
  const fs::path plan = stateFolder() / "simulation.json";
  const std::string written = textOf(plan);
  const auto app = startHeadless(pressing(samples(1)));
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->readAll(), "");
  const std::string text = app->errorText();
  EXPECT_EQ(text.rfind("pallimo: ", 0), 0u) << text;
  EXPECT_NE(text.find(plan.string()), std::string::npos) << text;
  EXPECT_NE(text.find("faults.helperSilen"), std::string::npos) << text;
  EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
  // Nothing was done, and whoever wrote it down can mend it.
  EXPECT_EQ(textOf(plan), written);
  EXPECT_FALSE(fs::exists(helperPath()));
}

}  // namespace
}  // namespace pallimo::end_to_end
