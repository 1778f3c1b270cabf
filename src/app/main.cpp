// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <fcntl.h>
#include <unistd.h>

#include <QApplication>
#include <QCoreApplication>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "adapters/posix/descriptor_output.h"
#include "adapters/posix/posix_user_identity.h"
#include "adapters/qt/qt_http_client.h"
#include "adapters/qt/unix_signals.h"
#include "analytics/silent_http_client.h"
#include "app/diagnosis/diagnosis.h"
#include "app/headless/headless_run.h"
#include "app/models/shared_general_model.h"
#include "app/served_metrics.h"
#include "app/start/command_line.h"
#include "app/start/make_platform.h"
#include "app/start/run_end.h"
#include "app/start/told_launch.h"
#include "app/window/system_chrome.h"
#include "app/window/window_run.h"
#include "privacy/user_words.h"

namespace pallimo::app {
namespace {

int fail(int status, const std::string& message) {
  std::cerr << "pallimo: " + message + "\n";
  return status;
}

int print(const std::string& text) {
  adapters::posix::DescriptorOutput output(STDOUT_FILENO);
  if (output.write(text) != ports::StandardOutput::State::failed) return run_status::kDone;
  return fail(run_status::kOutputFailed,
              std::string(run_message::kOutputFailed) + output.failure());
}

std::string linesOf(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

int listMachines(const Options& options) {
  const auto listed = listedMachines(options);
  if (const auto* error = std::get_if<StartError>(&listed)) {
    return fail(run_status::kWrongUse, error->message);
  }
  return print(linesOf(std::get<std::vector<std::string>>(listed)));
}

RunEnd runHeadless(const Platform& platform, const Options& options) {
  constexpr int kStandardOutput = 1;
  adapters::posix::DescriptorOutput output(kStandardOutput);
  GeneralModel& general = SharedGeneralModel::get();
  RunEnd end;
  const auto run = HeadlessRun::create(
      {platform.mainQueue, platform.notifications, general, output},
      {options.format, options.samples, options.installHelper, options.speed}, [&end](RunEnd how) {
        end = std::move(how);
        QCoreApplication::quit();
      });
  const adapters::qt::UnixSignals interruptions([&run] { run->interrupt(); });
  run->start();
  QCoreApplication::exec();
  general.applicationWillTerminate();
  return end;
}

RunEnd runDiagnosis(PlatformOwner& owner, const Options& options) {
  constexpr int kStandardOutput = 1;
  adapters::posix::DescriptorOutput output(kStandardOutput);
  const adapters::posix::PosixUserIdentity identity;
  RunEnd end;
  const auto diagnosis =
      Diagnosis::create(owner.platform(), output,
                        {PALLIMO_VERSION, privacy::wordsThatTellTheUser(identity), options.speed},
                        [&end](RunEnd how) {
                          end = std::move(how);
                          QCoreApplication::quit();
                        });
  const adapters::qt::UnixSignals interruptions([&diagnosis] { diagnosis->interrupt(); });
  diagnosis->start();
  QCoreApplication::exec();
  owner.endLink();  // what the delivery thread still does is done before the diagnosis goes
  return end;
}

RunEnd runWindow(const Platform& platform) {
  const adapters::qt::UnixSignals interruptions([] { QCoreApplication::quit(); });
  GeneralModel& general = SharedGeneralModel::get();
  WindowRun run(platform, general, systemChrome());
  run.window().show();
  QCoreApplication::exec();
  return {};
}

Analytics analytics(const Options& options) {
  constexpr std::string_view kServer = PALLIMO_ANALYTICS_URL;
  if (isToldLaunch(options, kServer, std::getenv("DO_NOT_TRACK"))) {
    return {kServer, std::make_unique<adapters::qt::QtHttpClient>()};
  }
  return {kServer, std::make_unique<analytics::SilentHttpClient>()};
}

RunEnd runApp(const Options& options) {
  const auto made = makePlatform(options, analytics(options));
  if (const auto* error = std::get_if<StartError>(&made)) {
    return {run_status::kWrongUse, error->message};
  }
  PlatformOwner& owner = *std::get<std::unique_ptr<PlatformOwner>>(made);
  if (options.action == Options::Action::diagnose) return runDiagnosis(owner, options);
  ServedMetrics served(PALLIMO_VERSION);
  if (options.serve) {
    if (auto problem = served.listen(owner.platform(), *options.serve)) {
      return {run_status::kWrongUse, std::move(problem->message)};
    }
  }
  // Never released: the models live as long as the process.
  [[maybe_unused]] const auto* shared = new SharedGeneralModel(owner.platform());
  if (options.serve) served.follow(owner.platform(), SharedGeneralModel::get());
  RunEnd end =
      options.headless ? runHeadless(owner.platform(), options) : runWindow(owner.platform());
  owner.endLink();
  return end;
}

/// Descriptors 0 to 2 that nobody opened would be handed to sockets and files, and lines would be
/// written into those. What is opened in their place can't be written to.
void fillStandardDescriptors() {
  int descriptor = 0;
  do {
    descriptor = open("/dev/null", O_RDONLY);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor > STDERR_FILENO) close(descriptor);
}

int main(int argumentCount, char* arguments[]) {
  fillStandardDescriptors();
  // A reader that is gone shows in the result of a write.
  std::signal(SIGPIPE, SIG_IGN);
  const auto parsed = parseCommandLine({arguments + 1, arguments + argumentCount});
  if (const auto* error = std::get_if<UsageError>(&parsed)) {
    return fail(run_status::kWrongUse, error->message + "; see pallimo --help");
  }
  const Options& options = std::get<Options>(parsed);
  switch (options.action) {
    case Options::Action::showHelp:
      return print(std::string(kHelpText));
    case Options::Action::showVersion:
      return print("pallimo " PALLIMO_VERSION "\n");
    case Options::Action::listMachines:
      return listMachines(options);
    case Options::Action::diagnose:
    case Options::Action::run:
      break;
  }
  const bool hasWindow = !options.headless && options.action == Options::Action::run;
  if (hasWindow) {
    if (const auto problem = missingDisplay()) return fail(run_status::kWrongUse, problem->message);
  }
  int one = 1;  // the command line is ours alone
  const std::unique_ptr<QCoreApplication> application =
      hasWindow ? std::make_unique<QApplication>(one, arguments)
                : std::make_unique<QCoreApplication>(one, arguments);
  // Qt has taken over the user's locale.
  std::setlocale(LC_NUMERIC, "C");
  const RunEnd end = runApp(options);
  return end.status == 0 ? 0 : fail(end.status, end.message);
}

}  // namespace
}  // namespace pallimo::app

int main(int argumentCount, char* arguments[]) {
  return pallimo::app::main(argumentCount, arguments);
}
