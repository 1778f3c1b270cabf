// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ports/bundle.h"
#include "ports/clock.h"
#include "ports/http_client.h"
#include "ports/process_information.h"
#include "ports/random_numbers.h"
#include "ports/screens.h"
#include "ports/system_controls.h"
#include "ports/user_defaults.h"

namespace pallimo::analytics {

/// Tells a Matomo server, once a start, that the app was started: an anonymous event over Matomo's
/// tracking protocol, one GET request. Nothing is retried and no failure is reported.
///
/// One in the process, as a part of the composition root, which is shared by the process and made
/// on the first use; so it has no shared instance of its own. Main thread.
class MatomoTracker {
 public:
  /// All outlive the tracker.
  struct Services {
    ports::HttpClient& httpClient;
    ports::UserDefaults& defaults;
    const ports::SystemControls& controls;
    const ports::Screens& screens;
    const ports::ProcessInformation& processInformation;
    ports::RandomNumbers& randomNumbers;
    const ports::Clock& clock;
    const ports::Bundle& bundle;
  };

  /// `serverURL` is the server's base, with "/" at its end. Reads the app's info dictionary.
  MatomoTracker(const Services& services, std::string serverURL);
  MatomoTracker(const MatomoTracker&) = delete;
  MatomoTracker& operator=(const MatomoTracker&) = delete;

  /// Sends the event of this start and returns at once. Sends nothing when `endPoint` is no web
  /// URL. The first time ever it makes the visitor's identifier and keeps it in the settings.
  void track();

  /// Kept, never sent.
  int totalNumberOfVisits() const { return totalNumberOfVisits_; }
  /// True until the first event.
  bool sessionStart() const { return sessionStart_; }
  const std::string& serverURL() const { return serverURL_; }
  const std::string& endPoint() const { return endPoint_; }
  const std::string& siteID() const { return siteID_; }
  /// The version for people, else "0".
  const std::string& swVersion() const { return swVersion_; }
  /// The build's version, else "0".
  const std::string& appVersion() const { return appVersion_; }
  /// Else "com.".
  const std::string& appIdentifier() const { return appIdentifier_; }
  /// The name for people, else the short one, else "com.", as if it were an identifier.
  const std::string& appName() const { return appName_; }
  /// The parameters of the last event, not encoded.
  const std::map<std::string, std::string, std::less<>>& params() const { return params_; }
  /// The custom variables of the last event: slots, each with a name and a value.
  const std::map<std::string, std::vector<std::string>>& visitCustomVariablesParams() const {
    return visitCustomVariablesParams_;
  }

 private:
  void setEventParameters();
  void setTimeParameters();
  void setVisitParameters();
  void setCustomVariables();
  void setVisitorParameters();
  void set(std::string_view parameter, std::string value);

  std::string requestURL() const;
  std::string hardwareModel() const;
  std::string screenResolution() const;
  std::string visitorID() const;

  const Services services_;
  const int totalNumberOfVisits_ = 0;
  bool sessionStart_ = true;
  const std::string serverURL_;
  const std::string endPoint_;
  const std::string siteID_ = "2";
  std::string swVersion_;
  std::string appVersion_;
  std::string appIdentifier_;
  std::string appName_;
  std::map<std::string, std::string, std::less<>> params_;
  std::map<std::string, std::vector<std::string>> visitCustomVariablesParams_;
};

}  // namespace pallimo::analytics
