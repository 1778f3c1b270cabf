// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/matomo_tracker.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "analytics/matomo_parameters.h"
#include "analytics/percent_encoding.h"
#include "analytics/uniform_number.h"
#include "analytics/web_url.h"
#include "base/civil_time.h"
#include "base/text_format.h"
#include "base/utf8.h"
#include "base/uuid.h"

namespace pallimo::analytics {

namespace {

constexpr std::string_view kVisitorIDKey = "reference";
constexpr double kTimeout = 5.0;
constexpr std::uint64_t kLastRandomNumber = 50000;

std::optional<std::string> textIn(const std::optional<base::PropertyList>& info,
                                  std::string_view key) {
  const base::PropertyList* value = info ? info->find(key) : nullptr;
  const std::string* text = value == nullptr ? nullptr : value->text();
  return text == nullptr ? std::nullopt : std::optional(*text);
}

/// "2024-02-29 23:59:58".
std::string dateAndTime(const base::CivilTime& time) {
  std::array<char, 80> text{};  // six numbers of any size
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month,
                time.day, time.hour, time.minute, time.second);
  return text.data();
}

std::optional<std::string> jsonText(const std::map<std::string, std::vector<std::string>>& map) {
  try {
    return nlohmann::json(map).dump();
  } catch (const nlohmann::json::exception&) {
    return std::nullopt;  // a text that is no UTF-8
  }
}

std::string newVisitorID(ports::RandomNumbers& random) {
  constexpr std::size_t kLength = 16;
  const std::uint64_t high = random.next();
  const std::uint64_t low = random.next();
  std::string id = base::uuidText(high, low);
  id.erase(std::remove(id.begin(), id.end(), '-'), id.end());
  id.resize(kLength);
  std::transform(id.begin(), id.end(), id.begin(),
                 [](unsigned char digit) { return static_cast<char>(std::tolower(digit)); });
  return id;
}

}  // namespace

MatomoTracker::MatomoTracker(const Services& services, std::string serverURL)
    : services_(services), serverURL_(std::move(serverURL)), endPoint_(serverURL_ + "piwik.php") {
  const std::optional<base::PropertyList> info = services_.bundle.infoDictionary("");
  swVersion_ = textIn(info, "CFBundleShortVersionString").value_or("0");
  appVersion_ = textIn(info, "CFBundleVersion").value_or("0");
  appIdentifier_ = textIn(info, "CFBundleIdentifier").value_or("com.");
  appName_ =
      textIn(info, "CFBundleDisplayName").value_or(textIn(info, "CFBundleName").value_or("com."));
}

void MatomoTracker::track() {
  params_.clear();
  setEventParameters();
  setTimeParameters();
  setVisitParameters();
  setVisitorParameters();
  const std::string url = requestURL();
  if (!hostOfWebURL(url)) return;
  services_.httpClient.send({.url = url,
                             .cachePolicy = ports::HttpCachePolicy::reloadIgnoringLocalCacheData,
                             .timeout = kTimeout});
}

void MatomoTracker::setEventParameters() {
  set(kMatomoParameterEventCategory, appIdentifier_);
  set(kMatomoParameterEventAction, "SW Version");
  set(kMatomoParameterEventName, swVersion_);
  set(kMatomoParameterEventValue, "1");
  set(kMatomoParameterURL, "http://" + appName_);
}

void MatomoTracker::setTimeParameters() {
  const auto now = services_.clock.now();
  const base::CivilTime local = base::localTime(now);
  set(kMatomoParameterRandomNumber,
      std::to_string(uniformNumber(services_.randomNumbers, kLastRandomNumber)));
  set(kMatomoParameterHours, std::to_string(local.hour));
  set(kMatomoParameterMinutes, std::to_string(local.minute));
  set(kMatomoParameterSeconds, std::to_string(local.second));
  set(kMatomoParameterDateAndTime, dateAndTime(base::utcTime(now)));
}

void MatomoTracker::setVisitParameters() {
  if (sessionStart_) {
    set(kMatomoParameterSessionStart, "1");
    set(kMatomoParameterTotalNumberOfVisits, "1");
    sessionStart_ = false;
  }
  set(kMatomoParameterPreviousVisitTimestamp, "0");
  setCustomVariables();
}

void MatomoTracker::setCustomVariables() {
  visitCustomVariablesParams_ = {
      {"1", {"Platform", hardwareModel()}},
      {"2", {"OS version", services_.processInformation.operatingSystemVersionString()}},
      {"3", {"App version", appVersion_}},
      {"4", {"Monitors", std::to_string(services_.screens.count())}},
      // The name has always been used twice; the server's reports are read by slot.
      {"5", {"App version", appName_}},
  };
  if (auto json = jsonText(visitCustomVariablesParams_)) {
    set(kMatomoParameterVisitScopeCustomVariables, *std::move(json));
  }
}

void MatomoTracker::setVisitorParameters() {
  set(kMatomoParameterSiteID, siteID_);
  set(kMatomoParameterRecord, "1");
  set(kMatomoParameterAPIVersion, "1");
  set(kMatomoParameterScreenResolution, screenResolution());
  set(kMatomoParameterVisitorID, visitorID());
  set(kMatomoParameterFirstVisitTimestamp, "0");
}

void MatomoTracker::set(std::string_view parameter, std::string value) {
  params_.insert_or_assign(std::string(parameter), std::move(value));
}

std::string MatomoTracker::requestURL() const {
  std::string url = endPoint_;
  char separator = '?';
  for (const auto& [parameter, value] : params_) {
    url += separator;
    url += parameter + "=" + percentEncodedValue(value);
    separator = '&';
  }
  return url;
}

std::string MatomoTracker::hardwareModel() const {
  const base::Bytes bytes = services_.controls.bytes("hw.model").value_or(base::Bytes());
  return base::textBeforeNul(bytes).value_or("");
}

std::string MatomoTracker::screenResolution() const {
  const ports::Screen screen = services_.screens.mainScreen().value_or(ports::Screen());
  return base::formatFixed(screen.width * screen.backingScaleFactor, 0) + "x" +
         base::formatFixed(screen.height * screen.backingScaleFactor, 0);
}

std::string MatomoTracker::visitorID() const {
  std::string id = services_.defaults.textForKey(kVisitorIDKey).value_or("");
  if (!id.empty()) return id;
  id = newVisitorID(services_.randomNumbers);
  services_.defaults.setText(kVisitorIDKey, id);
  return id;
}

}  // namespace pallimo::analytics
