// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/matomo_tracker.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analytics/silent_http_client.h"
#include "fakes/recording_http_client.h"
#include "unit/analytics/tracked_app.h"
#include "unit/base/zone_scope.h"

namespace pallimo::analytics {
namespace {

using base::PropertyList;
using nlohmann::json;

constexpr const char* kServer = "https://analytics.example/";
constexpr std::string_view kEndPoint = "https://analytics.example/piwik.php?";

/// A launch of the app, or several that share their settings.
class MatomoTrackerTest : public testing::Test {
 protected:
  /// A tracker as the next launch makes it.
  MatomoTracker& launch(std::string serverURL = kServer) {
    tracker_ = std::make_unique<MatomoTracker>(app_.services(client_), std::move(serverURL));
    return *tracker_;
  }

  /// The URL of the one event that a launch sends; empty when that is not one.
  std::string sentURL() {
    launch().track();
    const auto sent = client_.takeSent();
    return sent.size() == 1 ? sent.front().url : std::string();
  }

  /// One parameter's value as it stands in the sent URL.
  std::optional<std::string> sent(const std::string& parameter) {
    const std::string url = "&" + sentURL().substr(kEndPoint.size()) + "&";
    const auto at = url.find("&" + parameter + "=");
    if (at == std::string::npos) return std::nullopt;
    const auto begin = at + parameter.size() + 2;
    return url.substr(begin, url.find('&', begin) - begin);
  }

  /// The same before encoding.
  std::string param(const std::string& parameter) {
    launch().track();
    const auto found = tracker_->params().find(parameter);
    return found == tracker_->params().end() ? "(none)" : found->second;
  }

  std::vector<std::string> customVariable(const std::string& slot) {
    return json::parse(param("_cvar")).at(slot).get<std::vector<std::string>>();
  }

  TrackedApp app_;
  fakes::RecordingHttpClient client_;
  std::unique_ptr<MatomoTracker> tracker_;
};

std::chrono::system_clock::time_point at(std::chrono::year_month_day day,
                                         std::chrono::seconds time) {
  return std::chrono::sys_days(day) + time;
}

using std::chrono::hours, std::chrono::minutes, std::chrono::seconds, std::chrono::year;

// What a new tracker holds.

TEST_F(MatomoTrackerTest, BeginsAsASessionOfNoVisits) {
  const MatomoTracker& tracker = launch();
  EXPECT_EQ(tracker.totalNumberOfVisits(), 0);
  EXPECT_TRUE(tracker.sessionStart());
  EXPECT_EQ(tracker.siteID(), "2");
  EXPECT_TRUE(tracker.params().empty());
  EXPECT_TRUE(tracker.visitCustomVariablesParams().empty());
}

TEST_F(MatomoTrackerTest, TheEndPointFollowsTheServersURL) {
  EXPECT_EQ(launch("https://a.example/b/").serverURL(), "https://a.example/b/");
  EXPECT_EQ(tracker_->endPoint(), "https://a.example/b/piwik.php");
}

TEST_F(MatomoTrackerTest, TheAppsTextsComeFromItsInfoDictionary) {
  const MatomoTracker& tracker = launch();
  EXPECT_EQ(tracker.swVersion(), "1.2");
  EXPECT_EQ(tracker.appVersion(), "345");
  EXPECT_EQ(tracker.appIdentifier(), "com.ostrovane.pallimo");
  EXPECT_EQ(tracker.appName(), "Pallimo");
}

TEST_F(MatomoTrackerTest, WithoutAnInfoDictionaryTheFallbacksStand) {
  app_.bundle.removeInfo();
  const MatomoTracker& tracker = launch();
  EXPECT_EQ(tracker.swVersion(), "0");
  EXPECT_EQ(tracker.appVersion(), "0");
  EXPECT_EQ(tracker.appIdentifier(), "com.");
  EXPECT_EQ(tracker.appName(), "com.");
}

TEST_F(MatomoTrackerTest, EachTextHasItsOwnFallback) {
  for (const char* key : {"CFBundleShortVersionString", "CFBundleVersion", "CFBundleIdentifier",
                          "CFBundleDisplayName", "CFBundleName"}) {
    app_.bundle.remove(key);
  }
  const MatomoTracker& tracker = launch();
  EXPECT_EQ(tracker.swVersion(), "0");
  EXPECT_EQ(tracker.appVersion(), "0");
  EXPECT_EQ(tracker.appIdentifier(), "com.");
  EXPECT_EQ(tracker.appName(), "com.");
}

TEST_F(MatomoTrackerTest, AValueThatIsNoTextCountsAsAbsent) {
  app_.bundle.set("CFBundleShortVersionString", PropertyList(1.2));
  app_.bundle.set("CFBundleVersion", PropertyList(std::int64_t{345}));
  app_.bundle.set("CFBundleIdentifier", PropertyList(true));
  app_.bundle.set("CFBundleDisplayName", PropertyList());
  app_.bundle.set("CFBundleName", PropertyList(base::PropertyListArray()));
  const MatomoTracker& tracker = launch();
  EXPECT_EQ(tracker.swVersion(), "0");
  EXPECT_EQ(tracker.appVersion(), "0");
  EXPECT_EQ(tracker.appIdentifier(), "com.");
  EXPECT_EQ(tracker.appName(), "com.");
}

TEST_F(MatomoTrackerTest, AnEmptyTextIsNotAbsent) {
  app_.bundle.set("CFBundleShortVersionString", "");
  app_.bundle.set("CFBundleDisplayName", "");
  EXPECT_EQ(launch().swVersion(), "");
  EXPECT_EQ(tracker_->appName(), "");
}

// The request.

TEST_F(MatomoTrackerTest, SendsOneRequestThatAsksTheServerAndWaitsFiveSeconds) {
  launch().track();
  const auto sent = client_.takeSent();
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(sent.front().cachePolicy, ports::HttpCachePolicy::reloadIgnoringLocalCacheData);
  EXPECT_EQ(sent.front().timeout, 5.0);
}

TEST_F(MatomoTrackerTest, NothingIsSentBeforeItIsAsked) {
  launch();
  EXPECT_TRUE(client_.takeSent().empty());
}

TEST_F(MatomoTrackerTest, TheWholeURL) {
  const tests::ZoneScope zone("UTC");
  app_.clock.set(at(year{2024} / 2 / 29, hours(13) + minutes(4) + seconds(5)));
  EXPECT_EQ(sentURL(),
            "https://analytics.example/piwik.php"
            "?_cvar=%7B%221%22:%5B%22Platform%22%2C%22Mac14%2C9%22%5D"
            "%2C%222%22:%5B%22OS%20version%22%2C%22Version%2014.5%20%28Build%2023F79%29%22%5D"
            "%2C%223%22:%5B%22App%20version%22%2C%22345%22%5D"
            "%2C%224%22:%5B%22Monitors%22%2C%221%22%5D"
            "%2C%225%22:%5B%22App%20version%22%2C%22Pallimo%22%5D%7D"
            "&_id=0123456789ab4def&_idts=0&_idvc=1&_viewts=0&apiv=1"
            "&cdt=2024-02-29%2013:04:05&e_a=SW%20Version&e_c=com.ostrovane.pallimo&e_n=1.2&e_v=1"
            "&h=13&idsite=2&m=4&new_visit=1&r=7&rec=1&res=3024x1964&s=5"
            "&url=http:%2F%2FPallimo");
}

TEST_F(MatomoTrackerTest, EveryParameterIsSentAndNoOther) {
  launch().track();
  std::set<std::string> names;
  for (const auto& [name, value] : tracker_->params()) names.insert(name);
  const std::set<std::string> all = {
      "e_c", "e_a",  "e_n",   "e_v",       "url", "r",   "h",     "m",       "s",      "cdt",
      "_id", "apiv", "_cvar", "new_visit", "rec", "res", "_idvc", "_viewts", "idsite", "_idts"};
  EXPECT_EQ(names, all);
}

TEST_F(MatomoTrackerTest, WithoutAServerNothingIsSent) {
  launch("").track();
  EXPECT_TRUE(client_.takeSent().empty());
}

TEST_F(MatomoTrackerTest, AServerWhoseURLIsNoneIsSentNothing) {
  for (const char* server :
       {"analytics.example/", "https:///", "https:// a/", "ftp://a.example/"}) {
    launch(server).track();
    EXPECT_TRUE(client_.takeSent().empty()) << server;
  }
}

TEST_F(MatomoTrackerTest, ASilentClientTakesTheEventAndSendsNothing) {
  SilentHttpClient silent;
  MatomoTracker tracker(app_.services(silent), kServer);
  tracker.track();
  EXPECT_FALSE(tracker.sessionStart());
}

// The event.

TEST_F(MatomoTrackerTest, TheEventTellsTheAppsVersion) {
  EXPECT_EQ(param("e_c"), "com.ostrovane.pallimo");
  EXPECT_EQ(param("e_a"), "SW Version");
  EXPECT_EQ(param("e_n"), "1.2");
  EXPECT_EQ(param("e_v"), "1");
  EXPECT_EQ(param("url"), "http://Pallimo");
}

TEST_F(MatomoTrackerTest, AnAppWithoutADisplayNameTellsItsName) {
  app_.bundle.remove("CFBundleDisplayName");
  EXPECT_EQ(param("url"), "http://PallimoShort");
}

TEST_F(MatomoTrackerTest, ANamelessAppTellsTheFallback) {
  app_.bundle.removeInfo();
  EXPECT_EQ(param("url"), "http://com.");
}

// Encoding.

TEST_F(MatomoTrackerTest, PlusAndAmpersandOfAValueAreEncoded) {
  app_.bundle.set("CFBundleShortVersionString", "1+2&3");
  EXPECT_EQ(sent("e_n"), "1%2B2%263");
}

TEST_F(MatomoTrackerTest, AValueCannotAddAParameter) {
  app_.bundle.set("CFBundleShortVersionString", "1&idsite=9#");
  EXPECT_EQ(sent("e_n"), "1%26idsite%3D9%23");
  EXPECT_EQ(sent("idsite"), "2");
}

TEST_F(MatomoTrackerTest, KeysAreNotEncoded) {
  const std::string url = sentURL();
  for (const char* key : {"_cvar=", "&_id=", "&e_c=", "&new_visit="}) {
    EXPECT_NE(url.find(key), std::string::npos) << key;
  }
}

TEST_F(MatomoTrackerTest, AValueThatIsNoUtf8IsSentEmpty) {
  app_.bundle.set("CFBundleIdentifier", "com.\xff");
  EXPECT_EQ(sent("e_c"), "");
}

// Time.

TEST_F(MatomoTrackerTest, TheHoursAreLocalAndTheDateIsNot) {
  const tests::ZoneScope zone("XYZ-5:45");  // east of Greenwich
  app_.clock.set(at(year{2023} / 12 / 31, hours(20) + minutes(3) + seconds(9)));
  EXPECT_EQ(param("h"), "1");
  EXPECT_EQ(param("m"), "48");
  EXPECT_EQ(param("s"), "9");
  EXPECT_EQ(param("cdt"), "2023-12-31 20:03:09");
}

TEST_F(MatomoTrackerTest, LocalNumbersAreNotPaddedAndTheDatesAre) {
  const tests::ZoneScope zone("UTC");
  app_.clock.set(at(year{2025} / 6 / 5, hours(4) + minutes(3) + seconds(2)));
  EXPECT_EQ(param("h"), "4");
  EXPECT_EQ(param("m"), "3");
  EXPECT_EQ(param("s"), "2");
  EXPECT_EQ(param("cdt"), "2025-06-05 04:03:02");
}

TEST_F(MatomoTrackerTest, MidnightIsThreeZeros) {
  const tests::ZoneScope zone("UTC");
  app_.clock.set(at(year{2024} / 1 / 1, seconds(0)));
  EXPECT_EQ(param("h") + param("m") + param("s"), "000");
}

TEST_F(MatomoTrackerTest, TheRandomNumberGoesUpToFiftyThousand) {
  const auto sentRandomNumber = [this](std::uint64_t word) {
    fakes::ScriptedRandomNumbers random{word};
    MatomoTracker tracker({client_, app_.defaults, app_.controls, app_.screens,
                           app_.processInformation, random, app_.clock, app_.bundle},
                          kServer);
    tracker.track();
    return tracker.params().find("r")->second;
  };
  EXPECT_EQ(sentRandomNumber(50001 * 2 - 1), "50000");
  EXPECT_EQ(sentRandomNumber(50001 * 2), "0");
  EXPECT_EQ(sentRandomNumber(50001 * 2 + 1), "1");
}

// The visit.

TEST_F(MatomoTrackerTest, OnlyTheFirstEventBeginsAVisit) {
  MatomoTracker& tracker = launch();
  tracker.track();
  EXPECT_FALSE(tracker.sessionStart());
  EXPECT_EQ(tracker.params().find("new_visit")->second, "1");
  EXPECT_EQ(tracker.params().find("_idvc")->second, "1");
  tracker.track();
  EXPECT_EQ(tracker.params().count("new_visit"), 0u);
  EXPECT_EQ(tracker.params().count("_idvc"), 0u);
  EXPECT_EQ(tracker.params().find("_viewts")->second, "0");
}

TEST_F(MatomoTrackerTest, EveryEventIsSent) {
  launch().track();
  tracker_->track();
  EXPECT_EQ(client_.takeSent().size(), 2u);
}

TEST_F(MatomoTrackerTest, EveryLaunchBeginsAVisit) {
  launch().track();
  EXPECT_EQ(param("new_visit"), "1");
}

TEST_F(MatomoTrackerTest, TheVisitCountStaysOneAndIsKeptAsNone) {
  launch().track();
  EXPECT_EQ(tracker_->totalNumberOfVisits(), 0);
  EXPECT_EQ(param("_idvc"), "1");
}

TEST_F(MatomoTrackerTest, FiveCustomVariablesTellTheMachine) {
  app_.screens.connect({ports::Screen(), ports::Screen(), ports::Screen()});
  launch().track();
  const std::map<std::string, std::vector<std::string>> expected = {
      {"1", {"Platform", "Mac14,9"}},
      {"2", {"OS version", "Version 14.5 (Build 23F79)"}},
      {"3", {"App version", "345"}},
      {"4", {"Monitors", "3"}},
      {"5", {"App version", "Pallimo"}}};
  EXPECT_EQ(tracker_->visitCustomVariablesParams(), expected);
  EXPECT_EQ(json::parse(tracker_->params().find("_cvar")->second), json(expected));
}

TEST_F(MatomoTrackerTest, QuotationMarksStayWithinTheirVariable) {
  app_.processInformation.setOperatingSystemVersionString("a\"],\"9\":[\"\\\n");
  EXPECT_EQ(customVariable("2")[1], "a\"],\"9\":[\"\\\n");
  EXPECT_EQ(json::parse(param("_cvar")).size(), 5u);
}

TEST_F(MatomoTrackerTest, VariablesThatCannotBeEncodedAreLeftOut) {
  app_.processInformation.setOperatingSystemVersionString("\xc3");
  EXPECT_EQ(sent("_cvar"), std::nullopt);
  EXPECT_EQ(sent("idsite"), "2");
}

TEST_F(MatomoTrackerTest, VariablesOfAnEarlierEventAreNotSentAgain) {
  launch().track();
  app_.processInformation.setOperatingSystemVersionString("\xc3");
  tracker_->track();
  EXPECT_EQ(tracker_->params().count("_cvar"), 0u);
}

TEST_F(MatomoTrackerTest, TheModelEndsAtItsFirstNul) {
  app_.controls.setBytes("hw.model", {'M', 'a', 'c', 0, 'x', 0});
  EXPECT_EQ(customVariable("1")[1], "Mac");
}

TEST_F(MatomoTrackerTest, WhatIsNoUtf8InTheModelIsReplaced) {
  app_.controls.setBytes("hw.model", {'M', 0xff, 'c', 0});
  EXPECT_EQ(customVariable("1")[1], "M\uFFFDc");
}

TEST_F(MatomoTrackerTest, AModelThatCannotBeReadIsEmptyAndStopsNothing) {
  app_.controls = fakes::FakeSystemControls();
  EXPECT_EQ(customVariable("1")[1], "");
}

TEST_F(MatomoTrackerTest, AModelWithoutAnEndIsEmptyToo) {
  app_.controls.setBytes("hw.model", {'M', 'a', 'c'});
  EXPECT_EQ(customVariable("1")[1], "");
}

// The visitor.

TEST_F(MatomoTrackerTest, TheProtocolsNumbers) {
  EXPECT_EQ(param("idsite"), "2");
  EXPECT_EQ(param("rec"), "1");
  EXPECT_EQ(param("apiv"), "1");
  EXPECT_EQ(param("_idts"), "0");
  EXPECT_EQ(param("_viewts"), "0");
}

TEST_F(MatomoTrackerTest, TheResolutionIsThatOfTheMainScreenInPixels) {
  app_.screens.connect({{1512, 982, 2}, {1920, 1080, 1}});
  EXPECT_EQ(param("res"), "3024x1964");
}

TEST_F(MatomoTrackerTest, TheResolutionIsRoundedToWholePixels) {
  app_.screens.connect({{1706.66, 1066.2, 1.5}});
  EXPECT_EQ(param("res"), "2560x1599");
}

TEST_F(MatomoTrackerTest, WithoutAScreenTheResolutionIsNothingByNothing) {
  app_.screens.connect({});
  EXPECT_EQ(param("res"), "0x0");
  EXPECT_EQ(customVariable("4")[1], "0");
}

TEST_F(MatomoTrackerTest, TheFirstLaunchMakesTheVisitorsIdentifier) {
  EXPECT_EQ(sent("_id"), "0123456789ab4def");
  EXPECT_EQ(app_.defaults.textForKey("reference"), "0123456789ab4def");
}

TEST_F(MatomoTrackerTest, TheIdentifierIsSixteenLowerCaseDigits) {
  const std::string id = param("_id");
  EXPECT_EQ(id.size(), 16u);
  EXPECT_EQ(id.find_first_not_of("0123456789abcdef"), std::string::npos) << id;
}

TEST_F(MatomoTrackerTest, LaterLaunchesSendTheSameIdentifier) {
  const std::string first = param("_id");
  EXPECT_EQ(param("_id"), first);
  EXPECT_EQ(app_.defaults.textForKey("reference"), first);
}

TEST_F(MatomoTrackerTest, AnIdentifierOfTheSettingsIsSentAsItIs) {
  app_.defaults.setText("reference", "Any Text");
  EXPECT_EQ(sent("_id"), "Any%20Text");
  EXPECT_EQ(app_.defaults.textForKey("reference"), "Any Text");
}

TEST_F(MatomoTrackerTest, AnEmptyIdentifierIsReplaced) {
  app_.defaults.setText("reference", "");
  EXPECT_EQ(param("_id"), "0123456789ab4def");
  EXPECT_EQ(app_.defaults.textForKey("reference"), "0123456789ab4def");
}

}  // namespace
}  // namespace pallimo::analytics
