// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

#include "fakes/fake_metrics_server.h"
#include "fakes/fake_process_information.h"
#include "fakes/fake_screens.h"
#include "fakes/fake_software_updater.h"
#include "fakes/fake_user_notifications.h"
#include "fakes/memory_file_store.h"
#include "fakes/recording_http_client.h"
#include "fakes/recording_url_opener.h"
#include "fakes/scripted_random_numbers.h"

namespace pallimo::fakes {

/// What a platform needs of the user's desktop and of the world outside.
struct FakeDesktop {
  static constexpr std::string_view kAnalyticsURL = "https://analytics.example/";

  MemoryFileStore files;
  FakeUserNotifications userNotifications;
  ScriptedRandomNumbers randomNumbers;
  FakeSoftwareUpdater softwareUpdater;
  RecordingHttpClient analyticsClient;
  FakeScreens screens;
  FakeProcessInformation processInformation;
  RecordingUrlOpener urlOpener;
  FakeMetricsServer metricsServer;
};

}  // namespace pallimo::fakes
