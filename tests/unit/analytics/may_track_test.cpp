// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/may_track.h"

#include <gtest/gtest.h>

namespace pallimo::analytics {
namespace {

constexpr const char* kServer = "https://analytics.example/";

TEST(MayTrack, AServerAndNoRefusalAreAYes) { EXPECT_TRUE(mayTrack(kServer, nullptr)); }

TEST(MayTrack, DoNotTrackIsANo) { EXPECT_FALSE(mayTrack(kServer, "1")); }

TEST(MayTrack, AnyOtherWordInDoNotTrackIsANoToo) {
  for (const char* value : {"true", "yes", "2", "00", " ", "false"}) {
    EXPECT_FALSE(mayTrack(kServer, value)) << value;
  }
}

TEST(MayTrack, AnEmptyDoNotTrackAndZeroSayNothing) {
  EXPECT_TRUE(mayTrack(kServer, ""));
  EXPECT_TRUE(mayTrack(kServer, "0"));
}

TEST(MayTrack, WithoutAServerItIsANo) {
  for (const char* url : {"", "analytics.example/", "ftp://analytics.example/", "https:///"}) {
    EXPECT_FALSE(mayTrack(url, nullptr)) << url;
  }
}

TEST(MayTrack, AServerThatNeverExistsIsANo) {
  for (const char* url :
       {"https://analytics.invalid/", "https://ANALYTICS.Invalid/", "https://analytics.invalid./",
        "https://analytics.invalid:8443/a", "http://a@b.invalid", "https://invalid/"}) {
    EXPECT_FALSE(mayTrack(url, nullptr)) << url;
  }
}

TEST(MayTrack, ANameThatOnlyLooksLikeThatIsAYes) {
  for (const char* url :
       {"https://notinvalid/", "https://analytics.invalid.example/", "https://invalid.example/",
        "https://analytics.example/a.invalid", "https://b.invalid@analytics.example/"}) {
    EXPECT_TRUE(mayTrack(url, nullptr)) << url;
  }
}

}  // namespace
}  // namespace pallimo::analytics
