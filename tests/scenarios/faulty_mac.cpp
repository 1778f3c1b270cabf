// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "scenarios/faulty_mac.h"

#include <algorithm>

#include "base/text_format.h"
#include "logging/log_file_data.h"

namespace pallimo::scenarios {

app::Platform FaultyMac::platform() {
  return {.mainQueue = platform_.mainQueue,
          .backgroundQueue = background_,
          .notifications = platform_.notifications,
          .defaults = defaults_,
          .propertyLists = platform_.propertyLists,
          .systemControls = controls_,
          .smcDevice = platform_.smcDevice,
          .hidSensors = platform_.hidSensors,
          .accelerators = platform_.accelerators,
          .processorTicks = ticks_,
          .programLauncher = platform_.programLauncher,
          .helperConnector = platform_.helperConnector,
          .authorizationServices = platform_.authorizationServices,
          .helperInstaller = platform_.helperInstaller,
          .bundle = platform_.bundle,
          .clock = platform_.clock,
          .console = platform_.console,
          .systemLog = platform_.systemLog,
          .files = platform_.desktop.files,
          .userNotifications = platform_.desktop.userNotifications,
          .randomNumbers = random_,
          .softwareUpdater = platform_.desktop.softwareUpdater,
          .analyticsClient = platform_.desktop.analyticsClient,
          .screens = platform_.desktop.screens,
          .processInformation = platform_.desktop.processInformation,
          .urlOpener = platform_.desktop.urlOpener,
          .metricsServer = platform_.desktop.metricsServer,
          .analyticsURL = fakes::FakeDesktop::kAnalyticsURL};
}

std::vector<std::string> FaultyMac::start() {
  EXPECT_FALSE(served_.listen(platform(), {"127.0.0.1", 9123}));
  general_.emplace(platform());
  served_.follow(platform(), *general_);
  app::HeadlessRun::Settings settings;
  settings.format = app::OutputFormat::csv;
  settings.installHelper = true;
  run_ = app::HeadlessRun::create({queue(), platform_.notifications, *general_, output_}, settings,
                                  [this](app::RunEnd end) { ends_.push_back(std::move(end)); });
  run_->start();
  platform_.desktop.userNotifications.answer(world_.noticesAreAllowed, world_.noticesError);
  queue().run();
  letHelperAnswer();
  return rowsPrinted();
}

void FaultyMac::apply() {
  fakes::FakeSmcDevice& smc = platform_.smcDevice;
  smc.mend();
  smc.setOpens(world_.smcOpens);
  smc.setRecordResult(world_.smcRecordResult);
  if (world_.smcKeyCount) smc.setKeyCount(*world_.smcKeyCount);
  for (const auto& [key, value] : world_.smcValues) {
    smc.setFloat(key, value);
    const auto type = world_.smcTypes.find(key);
    if (type != world_.smcTypes.end()) smc.setKey(key, type->second, {0x0B, 0x43, 0, 0});
  }
  using ports::SMCCommand;
  for (const std::string& key : world_.smcUnreadable) smc.fail(SMCCommand::readBytes, key);
  for (const std::string& key : world_.smcUnlisted) smc.fail(SMCCommand::keyAtIndex, key);
  for (const std::string& key : world_.smcUntold) smc.fail(SMCCommand::readKeyInfo, key);
  if (!world_.smcReads) smc.failAll(SMCCommand::readBytes);
  if (!world_.smcTellsKeyInfo) smc.failAll(SMCCommand::readKeyInfo);
  if (!world_.smcTellsKeyCount) smc.fail(SMCCommand::readBytes, "#KEY");

  platform_.hidSensors.setMakesClients(world_.hidMakesClients);
  platform_.hidSensors.setHasList(world_.hidHasList);
  platform_.hidSensors.clear();
  for (const auto& service : world_.hidServices) platform_.hidSensors.add(service);

  platform_.accelerators.setSearchFails(world_.acceleratorSearchFails);
  platform_.accelerators.setEmptySearch(world_.acceleratorEmptySearch);
  platform_.accelerators.clear();
  for (const auto& properties : world_.accelerators) {
    platform_.accelerators.add(properties, world_.acceleratorReadFailures);
  }

  if (world_.displaysReport) {
    platform_.programLauncher.setOutput("/usr/sbin/system_profiler -xml SPDisplaysDataType",
                                        *world_.displaysReport);
  }

  connector().setConnects(world_.connects);
  connector().setHasProxies(world_.hasProxies);
  connector().setFailsAtOnce(world_.nobodyServes);
  platform_.bundle.embedHelper(world_.embeddedVersion);
  platform_.helperInstaller.blesses = world_.installs;
  platform_.authorizationServices.attempt = {
      world_.authorizes ? 0 : -60006,
      world_.authorizes ? std::make_shared<fakes::FakeAuthorizationServices::Token>() : nullptr};

  platform_.desktop.files.setDesktopFolder(world_.desktop);
  platform_.desktop.files.setFailure(world_.fileFailure);
  platform_.desktop.softwareUpdater.startError = world_.updaterError;
  platform_.desktop.screens.connect(world_.screens);
  platform_.desktop.processInformation.setOperatingSystemVersionString(world_.systemVersion);
  platform_.clock.set(kStart + std::chrono::seconds(seconds_ + world_.clockError));
  output_.state = world_.output;
  background_.run();
  applySettings();
}

void FaultyMac::applySettings() {
  store("samplingResolution", world_.storedPeriod, storedPeriod_);
  store("gpuFrequency", world_.storedGpuFrequency, storedGpuFrequency_);
  store("temperatureUnit", world_.storedUnit, storedUnit_);
  store("pathFolderLocation", world_.storedFolder, storedFolder_);
  queue().run();
}

/// Written only where it changes: each write is announced.
void FaultyMac::store(const char* key, const std::optional<std::string>& value,
                      std::optional<std::string>& stored) {
  if (value == stored) return;
  stored = value;
  if (value) {
    defaults_.stored.setText(key, *value);
  } else {
    defaults_.stored.remove(key);
  }
}

SeenSecond FaultyMac::second() {
  general_->logfileModel()->setLogEnabled(true);
  overdue_ = owed_;
  passTime();
  letHelperAnswer();
  platform_.console.forget();
  general_->logfileModel()->setLogEnabled(false);
  queue().run();
  SeenSecond seen;
  seen.rows = rowsPrinted();
  seen.log = whatBecameOfTheLog();
  seen.update = whatCheckingGave();
  seen.served = whatIsServed();
  return seen;
}

void FaultyMac::passTime() {
  ++seconds_;
  const std::chrono::milliseconds end = queue().now() + std::chrono::seconds(1);
  platform_.clock.advance(std::chrono::seconds(1));
  if (world_.mainThreadIsBusy) {
    queue().async([this] { queue().keepBusy(std::chrono::seconds(1)); });
  }
  queue().run();
  queue().advance(std::max(end - queue().now(), std::chrono::milliseconds(0)));
}

/// A new connection owes nothing of the one before.
bool FaultyMac::takeRequests() {
  const std::size_t before = owed_;
  for (const std::string& entry : connector().journal().take()) {
    if (entry.starts_with("connect ")) owed_ = overdue_ = 0;
    if (entry.starts_with("-> requestPowermetrics ")) ++owed_;
  }
  return owed_ != before;
}

void FaultyMac::letHelperAnswer() {
  takeRequests();
  while (helperAnswersSomething()) {
    queue().run();
    takeRequests();
  }
}

bool FaultyMac::helperAnswersSomething() {
  if (world_.helperHangs || connector().count() == 0) return false;
  const auto helper = connector().latest();
  if (helper->replyIsResponding(world_.helperSaysItResponds)) return true;
  if (helper->replyVersion(world_.helperVersion)) return true;
  if ((world_.helperIsLate ? overdue_ : owed_) == 0) return false;
  --owed_;
  if (overdue_ > 0) --overdue_;
  helper->sendResult(world_.document);
  if (world_.helperRepeats) helper->sendResult(world_.document);
  return true;
}

std::vector<std::string> FaultyMac::rowsPrinted() {
  std::vector<std::string> lines = output_.takeLines();
  std::erase(lines, std::string(logging::kCsvHeader));
  return lines;
}

std::string FaultyMac::whatBecameOfTheLog() {
  fakes::MemoryFileStore& files = platform_.desktop.files;
  std::string text = "nothing yet";
  for (const auto& [path, contents] : files.files()) {
    text = "saved in " + path.substr(0, path.rfind('/'));
  }
  files.forget();
  for (const std::string& line : platform_.console.lines()) {
    if (line.starts_with(kLogTrouble)) text = line.substr(0, line.find(" for "));
  }
  const auto notices = platform_.desktop.userNotifications.texts();
  platform_.desktop.userNotifications.forget();
  const bool isTold = !notices.empty() && notices.back().starts_with("Logging ended: Saved at: ");
  EXPECT_EQ(isTold, text != "nothing yet") << "the end of a log that was written is told";
  return text;
}

std::string FaultyMac::whatCheckingGave() {
  platform_.console.forget();
  auto& calls = platform_.desktop.softwareUpdater.calls;
  calls.clear();
  general_->sparkle()->checkForUpdates();
  if (!calls.empty() && calls.back() == "checkForUpdates") return "checks";
  const auto lines = platform_.console.lines();
  return lines.empty() ? "nothing" : lines.back();
}

std::string FaultyMac::whatIsServed() {
  for (const ports::MetricFamily& family : platform_.desktop.metricsServer.scrape()) {
    if (family.name != "pallimo_power_watts") continue;
    for (const ports::MetricSeries& series : family.series) {
      if (series.labels.front().second == "package") return base::formatFixed(series.value, 3);
    }
  }
  return "none";
}

std::string FaultyMac::ending() const {
  if (ends_.empty()) return "running";
  if (ends_.size() > 1) return "ended more than once";
  const app::RunEnd& end = ends_.front();
  return std::to_string(end.status) + (end.message.empty() ? "" : ": " + end.message);
}

std::string FaultyMac::title() const {
  const modules::ModuleModelMainTitle& title = *general_->modelMainTitle();
  return title.appleSiliconName() + ", " + title.gpuName() + ", " +
         std::to_string(title.numberOfECore()) + ", " + std::to_string(title.numberOfPCore()) +
         ", " + std::to_string(title.numberOfGPUCore());
}

}  // namespace pallimo::scenarios
