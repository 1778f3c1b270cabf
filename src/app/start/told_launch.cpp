// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/start/told_launch.h"

#include "analytics/may_track.h"

namespace pallimo::app {

bool isToldLaunch(const Options& options, std::string_view analyticsURL, const char* doNotTrack) {
  const bool isSeen = !options.headless && options.action == Options::Action::run;
  return isSeen && analytics::mayTrack(analyticsURL, doNotTrack);
}

}  // namespace pallimo::app
