// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Any stored values under the keys that the app reads, in both of its stores: one that keeps kinds,
// as a Mac's does, and one that keeps texts, as the file's does. Whatever stands there, every part
// of the app understands a value that it can work with, the parts agree, and what the app writes
// back is read as what it wrote.
//
// The input is lines of a key, "=", a kind (b, i, r, t, or - for its removal) and a value.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "analytics/matomo_tracker.h"
#include "fakes/fake_user_notifications.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_file_store.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/recording_http_client.h"
#include "fakes/recording_lines.h"
#include "fakes/scripted_random_numbers.h"
#include "fuzz/require.h"
#include "fuzz/text_user_defaults.h"
#include "helper/powermetrics_command.h"
#include "logging/log_file_model.h"
#include "sampling/sg_power_metrics.h"
#include "ui/display_settings.h"
#include "ui/settings_content.h"
#include "ui/window_place.h"
#include "unit/analytics/tracked_app.h"

namespace {

using namespace pallimo;
using fuzz::require;
namespace key = ports::settings_key;

constexpr const char* kPlace = "mainWindowPlace";
constexpr const char* kVisitor = "reference";
constexpr std::size_t kMostLines = 16;

class PromptQueue final : public ports::BackgroundQueue {
 public:
  void async(std::function<void()> task) override { task(); }
};

/// The parts of the app that read settings while it runs.
struct App {
  explicit App(ports::UserDefaults& store) : defaults(store) {}

  ports::UserDefaults& defaults;
  fakes::ManualMainQueue mainQueue;
  PromptQueue backgroundQueue;
  base::NotificationCentre notifications;
  adapters::libplist::LibplistReader reader;
  fakes::MemoryFileStore files;
  fakes::ManualClock clock;
  fakes::RecordingConsole console;
  fakes::FakeUserNotifications userNotifications;
  fakes::ScriptedRandomNumbers random;
  const std::shared_ptr<sampling::SGPowerMetrics> engine =
      sampling::SGPowerMetrics::create({mainQueue, notifications, defaults, reader});
  const std::shared_ptr<logging::LogFileModel> logs = logging::LogFileModel::create(
      {mainQueue, backgroundQueue, defaults, files, clock, console, userNotifications, random});
};

void set(fakes::MemoryUserDefaults& defaults, const std::string& name, double value) {
  defaults.setDouble(name, value);
}
void set(fuzz::TextUserDefaults& defaults, const std::string& name, double value) {
  defaults.setText(name, std::to_string(value));
}

template <class Store>
void store(Store& defaults, std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || equals + 1 == line.size()) return;
  const std::string name(line.substr(0, equals));
  const std::string value(line.substr(equals + 2));
  switch (line[equals + 1]) {
    case 'b':
      return defaults.setBool(name, value == "1");
    case 'i':
      return defaults.setInteger(name, std::strtoll(value.c_str(), nullptr, 10));
    case 'r':
      return set(defaults, name, std::strtod(value.c_str(), nullptr));
    case '-':
      return defaults.remove(name);
    default:
      return defaults.setText(name, value);
  }
}

void checkDisplay(const App& app) {
  const ui::DisplaySettings settings = ui::readDisplaySettings(app.defaults);
  const auto choice = ui::storedTemperatureChoice(app.defaults);
  require(!choice || *choice < ui::kTemperatureChoices.size());
  // A number that is no choice shows no choice, and Fahrenheit.
  require(settings.isFahrenheit == (!choice || *choice == 1));
  require(app.engine->includeGPU() == settings.gpuFrequency);
}

bool isDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// The period is one that the helper takes, unless it is an hour or longer; then the helper
/// refuses.
void checkPeriod(const App& app) {
  const double period = app.engine->msSampling();
  require(period >= 100);
  const auto command = helper::powermetricsCommand({.path = "/tool", .hasAnePower = true}, period,
                                                   app.engine->includeGPU(), 1);
  require(command.has_value() == (period <= helper::kLongestPeriod));
  if (!command) return;
  require(command->arguments.size() == 8 && command->path == "/tool");
  require(isDigits(command->arguments[3]));
  require(std::abs(std::stod(command->arguments[3]) - period) <= 0.5);
}

void checkPlace(const App& app) {
  const auto place = ui::windowPlaceFrom(app.defaults.textForKey(kPlace).value_or(""));
  if (!place) return;
  require(ui::windowPlaceFrom(ui::windowPlaceText(*place)) == place);
  const ui::DesktopArea screen{{0, 25}, 1512, 957};
  const ui::DesktopArea window{*place, 400, 300};
  const ui::WindowPlace stands = ui::placeOnScreens(window, {&screen, 1});
  const ui::DesktopArea shown{stands, window.width, window.height};
  // Wherever it goes, there it stays.
  require(ui::placeOnScreens(shown, {&screen, 1}) == stands);
  require(stands.x > -window.width && stands.x < screen.width);
  require(stands.y >= screen.corner.y && stands.y < screen.corner.y + screen.height);
}

bool endsIn(std::string_view path, std::string_view end) { return path.ends_with(end); }

void checkLogFolder(const App& app) {
  const auto stored = app.defaults.textForKey(key::kPathFolderLocation);
  const auto folder = app.logs->folderUseForSaving();
  require(folder.has_value() == stored.has_value());
  require(!folder || (folder->starts_with('/') && (*folder == "/" || !endsIn(*folder, "/"))));
  const auto shown = [&](bool isThere) {
    return ui::effectiveLogFolder(
        stored, folder, [] { return std::optional<std::string>("/desktop"); },
        [isThere](const std::string&) { return isThere; });
  };
  require(shown(true).starts_with('/') || (stored && !stored->empty()));
  require(shown(false) == folder.value_or("/desktop"));
}

/// A log of no rows goes into the folder, under its own name.
void checkLogFile(App& app) {
  app.logs->setLogEnabled(true);
  const std::string name = app.logs->filenameToUseForSaving().value_or("");
  app.logs->setLogEnabled(false);
  const auto writes = app.files.writes();
  require(writes.size() == 1);
  std::string folder = app.logs->folderUseForSaving().value_or("/home/ada/Desktop");
  if (folder != "/") folder += '/';
  require(writes.front() == folder + name + ".csv");
}

/// The visitor's name stays one parameter of the address, whatever is in it.
template <class Store>
void checkVisitor(Store& defaults) {
  constexpr std::string_view kServer = "https://analytics.example/";
  analytics::TrackedApp parts;
  fakes::RecordingHttpClient client;
  const auto before = defaults.textForKey(kVisitor);
  auto services = parts.services(client);
  analytics::MatomoTracker tracker(
      {services.httpClient, defaults, services.controls, services.screens,
       services.processInformation, services.randomNumbers, services.clock, services.bundle},
      std::string(kServer));
  tracker.track();
  const auto sent = client.takeSent();
  require(sent.size() == 1 && sent.front().url.starts_with(kServer));
  const std::string_view url = sent.front().url;
  require(std::all_of(url.begin(), url.end(), [](char c) { return c > ' ' && c < 0x7F; }));
  require(static_cast<std::size_t>(std::count(url.begin(), url.end(), '&')) + 1 ==
          tracker.params().size());
  const std::string id = tracker.params().at("_id");
  require(!id.empty() && defaults.textForKey(kVisitor) == id);
  require(!before || before->empty() || *before == id);
}

/// A click stores what was shown; it is read as the same.
void checkWriting(App& app) {
  const ui::DisplaySettings shown = ui::readDisplaySettings(app.defaults);
  for (const ui::SettingsGroup& group : ui::extraSettings()) {
    for (const ui::SettingsToggle& toggle : group.toggles) {
      app.defaults.setBool(toggle.key, app.defaults.boolForKey(toggle.key));
    }
  }
  if (const auto choice = ui::storedTemperatureChoice(app.defaults)) {
    ui::storeTemperatureChoice(app.defaults, ui::kTemperatureChoices[*choice]);
  }
  require(ui::readDisplaySettings(app.defaults) == shown);
  checkDisplay(app);
}

template <class Store>
void checkStore(std::string_view text) {
  Store defaults;
  App app(defaults);
  for (std::size_t line = 0; line < kMostLines && !text.empty(); ++line) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    store(defaults, text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    checkDisplay(app);
    checkPeriod(app);
    checkPlace(app);
    checkLogFolder(app);
  }
  checkLogFile(app);
  checkVisitor(defaults);
  checkWriting(app);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  checkStore<fakes::MemoryUserDefaults>(text);
  checkStore<fuzz::TextUserDefaults>(text);
  return 0;
}
