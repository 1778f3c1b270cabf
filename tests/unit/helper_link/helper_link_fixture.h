// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/notification_centre.h"
#include "fakes/fake_authorization_services.h"
#include "fakes/fake_bundle.h"
#include "fakes/fake_helper_connector.h"
#include "fakes/fake_helper_installer.h"
#include "fakes/journal.h"
#include "fakes/manual_background_queue.h"
#include "fakes/manual_main_queue.h"
#include "helper_link/delegates.h"
#include "helper_link/xpc_client.h"
#include "helper_link/xpc_manager.h"
#include "ports/console.h"
#include "ports/system_log.h"

namespace pallimo::helper_link::test {

using Entries = std::vector<std::string>;

class JournalSystemLog final : public ports::SystemLog {
 public:
  explicit JournalSystemLog(fakes::Journal& journal) : journal_(journal) {}
  void write(std::string_view line) override { journal_.add("log: " + std::string(line)); }

 private:
  fakes::Journal& journal_;
};

class JournalConsole final : public ports::Console {
 public:
  explicit JournalConsole(fakes::Journal& journal) : journal_(journal) {}
  void writeLine(std::string_view line) override { journal_.add("console: " + std::string(line)); }

 private:
  fakes::Journal& journal_;
};

class JournalContent final : public ContentModelDelegate {
 public:
  explicit JournalContent(fakes::Journal& journal) : journal_(journal) {}
  void update() override { journal_.add("content update"); }

 private:
  fakes::Journal& journal_;
};

/// A content model that looks at something each time it is told that it changed.
struct WatchingContent final : ContentModelDelegate {
  explicit WatchingContent(std::function<std::string()> what) : look(std::move(what)) {}
  void update() override { seen.push_back(look()); }

  const std::function<std::string()> look;
  Entries seen;
};

class JournalMoreButton final : public MoreButtonModelDelegate {
 public:
  explicit JournalMoreButton(fakes::Journal& journal) : journal_(journal) {}
  void notifyChange() override { journal_.add("more button notifyChange"); }

 private:
  fakes::Journal& journal_;
};

class JournalEngine final : public PowerMetricsModelDelegate {
 public:
  explicit JournalEngine(fakes::Journal& journal) : journal_(journal) {}
  void setAuthorized(bool flag) override {
    journal_.add(flag ? "engine setAuthorized true" : "engine setAuthorized false");
  }
  void stopTimer() override { journal_.add("engine stopTimer"); }
  void handleResult(std::optional<base::Bytes> bytes) override {
    journal_.add("engine handleResult");
    results.push_back(std::move(bytes));
  }

  std::vector<std::optional<base::Bytes>> results;

 private:
  fakes::Journal& journal_;
};

/// The helper link on fakes. Everything that happens stands in one journal, in order.
class HelperLinkFixture : public ::testing::Test {
 protected:
  HelperLinkFixture()
      : notes_{observe(base::notification::kXPCDidInstall),
               observe(base::notification::kXPCInstallError),
               observe(base::notification::kClearData)} {}

  XPCClient::Services clientServices() {
    return {connector, bundle, notifications, systemLog, console};
  }
  XPCManager::Services managerServices(Processor processor = Processor::appleSilicon) {
    return {clientServices(), mainQueue, backgroundQueue, authorization, installer, processor};
  }

  /// What happened since the last call.
  Entries happened() { return connector.journal().take(); }
  void forget() { connector.journal().take(); }

  /// How every fresh connection is built.
  static Entries building() {
    return {"connect com.ostrovane.powermetrics 4096", "setExportedObject",
            "setInvalidationHandler", "setInterruptionHandler", "resume"};
  }
  static Entries ending() {
    return {"clearInterruptionHandler", "clearInvalidationHandler", "invalidate"};
  }
  static Entries join(std::vector<Entries> parts) {
    Entries all;
    for (const Entries& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  }

  fakes::FakeHelperConnector connector;
  fakes::Journal& journal = connector.journal();
  fakes::FakeBundle bundle;
  base::NotificationCentre notifications;
  JournalSystemLog systemLog{journal};
  JournalConsole console{journal};
  fakes::ManualMainQueue mainQueue;
  fakes::ManualBackgroundQueue backgroundQueue;
  fakes::FakeAuthorizationServices authorization;
  fakes::FakeHelperInstaller installer;

  std::shared_ptr<JournalContent> content = std::make_shared<JournalContent>(journal);
  std::shared_ptr<JournalMoreButton> moreButton = std::make_shared<JournalMoreButton>(journal);
  std::shared_ptr<JournalEngine> engine = std::make_shared<JournalEngine>(journal);

 private:
  base::Subscription observe(std::string_view name) {
    return notifications.observe(name,
                                 [this, name] { journal.add("notice " + std::string(name)); });
  }

  base::Subscription notes_[3];
};

}  // namespace pallimo::helper_link::test
