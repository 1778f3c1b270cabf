// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "analytics/matomo_tracker.h"
#include "fakes/fake_process_information.h"
#include "fakes/fake_screens.h"
#include "fakes/fake_system_controls.h"
#include "fakes/manual_clock.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/scripted_random_numbers.h"

namespace pallimo::analytics {

/// A bundle with an info dictionary of its own, whose entries the test sets.
class AppBundle final : public ports::Bundle {
 public:
  void set(std::string key, base::PropertyList value) {
    entries_.insert_or_assign(std::move(key), std::move(value));
  }
  void set(std::string key, std::string value) {
    set(std::move(key), base::PropertyList(std::move(value)));
  }
  void remove(const std::string& key) { entries_.erase(key); }
  void removeInfo() { hasInfo_ = false; }

  std::optional<base::PropertyList> infoDictionary(std::string_view path) const override {
    if (!path.empty() || !hasInfo_) return std::nullopt;
    return base::PropertyList(base::PropertyListDictionary(entries_.begin(), entries_.end()));
  }

 private:
  bool hasInfo_ = true;
  std::map<std::string, base::PropertyList> entries_ = {
      {"CFBundleShortVersionString", base::PropertyList(std::string("1.2"))},
      {"CFBundleVersion", base::PropertyList(std::string("345"))},
      {"CFBundleIdentifier", base::PropertyList(std::string("com.ostrovane.pallimo"))},
      {"CFBundleDisplayName", base::PropertyList(std::string("Pallimo"))},
      {"CFBundleName", base::PropertyList(std::string("PallimoShort"))},
  };
};

/// Everything that a tracker asks, in fakes, except for the client that sends. Its first random
/// number makes `r` 7, its next two the identifier "0123456789ab4def".
struct TrackedApp {
  fakes::MemoryUserDefaults defaults;
  fakes::FakeSystemControls controls;
  fakes::FakeScreens screens;
  fakes::FakeProcessInformation processInformation;
  fakes::ScriptedRandomNumbers randomNumbers{50001 + 7, 0x0123456789ABCDEF, 0};
  fakes::ManualClock clock;
  AppBundle bundle;

  TrackedApp() { controls.setText("hw.model", "Mac14,9"); }

  MatomoTracker::Services services(ports::HttpClient& client) {
    return {client, defaults, controls, screens, processInformation, randomNumbers, clock, bundle};
  }
};

}  // namespace pallimo::analytics
