// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/make_helper_platform.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "adapters/common/descriptor.h"
#include "adapters/common/poll_loop.h"
#include "adapters/common/posix_child_processes.h"
#include "adapters/common/syslog_log.h"
#include "adapters/linux/installation/installed_helper_files.h"
#include "adapters/linux/installation/state_folder.h"
#include "adapters/linux/link/dbus_helper_listener.h"
#include "adapters/simulated/faults/faulty_helper_listener.h"
#include "adapters/simulated/simulation_file.h"
#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::helper {

namespace {

using adapters::common::Descriptor;
using adapters::common::SyslogLog;
using adapters::linux::StateFolder;

/// The path that this program was started from.
std::optional<std::string> ownPath() {
  constexpr std::size_t kLongestPath = 4096;
  constexpr std::string_view kReplaced = " (deleted)";
  std::array<char, kLongestPath> path;
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  if (length <= 0 || static_cast<std::size_t>(length) == path.size()) return std::nullopt;
  std::string_view name(path.data(), static_cast<std::size_t>(length));
  // An update may replace the file between our start and here.
  if (name.size() > kReplaced.size() && name.substr(name.size() - kReplaced.size()) == kReplaced) {
    name.remove_suffix(kReplaced.size());
  }
  return std::string(name);
}

/// The pipe end by which whoever started the helper waits for it.
Descriptor takeReadyDescriptor() {
  constexpr const char* kVariable = "PALLIMO_READY_FD";
  const char* const text = std::getenv(kVariable);
  int number = -1;
  if (text != nullptr) std::from_chars(text, text + std::strlen(text), number);
  unsetenv(kVariable);
  if (number <= STDERR_FILENO || fcntl(number, F_SETFD, FD_CLOEXEC) != 0) return {};
  return Descriptor(number);
}

/// Signals that end the helper become readable on the descriptor instead.
Descriptor takeEndingSignals() {
  sigset_t ending;
  sigemptyset(&ending);
  sigaddset(&ending, SIGTERM);
  sigaddset(&ending, SIGINT);
  sigaddset(&ending, SIGHUP);
  if (sigprocmask(SIG_BLOCK, &ending, nullptr) != 0) return {};
  return Descriptor(signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK));
}

class LinuxHelperPlatform final : public HelperPlatform {
 public:
  LinuxHelperPlatform(BuildFacts facts, StateFolder folder, Descriptor ready,
                      Descriptor endingSignals)
      : facts_(std::move(facts)),
        folder_(std::move(folder)),
        ready_(std::move(ready)),
        endingSignals_(std::move(endingSignals)),
        log_(std::string(helper_link::protocol::kMachServiceName)),
        children_(loop_),
        files_(folder_, log_),
        faults_(adapters::simulated::plannedFaults(folder_.simulationFile())) {
    endingWatch_ = loop_.watch(endingSignals_.get(), POLLIN, [this](short) {
      endingWatch_.reset();
      loop_.stop();
    });
  }

  ports::MainQueue& mainQueue() override { return loop_; }
  ports::ChildProcesses& childProcesses() override { return children_; }
  ports::HelperFiles& helperFiles() override { return files_; }
  ports::SystemLog& systemLog() override { return log_; }
  std::unique_ptr<ports::HelperListener> makeListener() override {
    constexpr int kDied = 1;
    return std::make_unique<adapters::simulated::FaultyHelperListener>(
        std::make_unique<adapters::linux::DBusHelperListener>(loop_, folder_), faults_,
        [] { _exit(kDied); });
  }

  PowermetricsTool powermetrics() override {
    PowermetricsTool tool;
    tool.path = facts_.powermetricsPath;
    // What the stand-in for the system's tool needs to know.
    tool.environment = [simulation = folder_.simulationFile()](std::uint64_t request) {
      using adapters::simulated::kRequestVariable, adapters::simulated::kSimulationVariable;
      return std::vector<std::string>{
          std::string(kSimulationVariable) + "=" + simulation,
          std::string(kRequestVariable) + "=" + std::to_string(request)};
    };
    return tool;
  }

  std::string version() override { return facts_.version; }
  void didStart() override { ready_.reset(); }
  void run() override { loop_.run(); }
  void stop() override { loop_.stop(); }

 private:
  const BuildFacts facts_;
  const StateFolder folder_;
  Descriptor ready_;
  const Descriptor endingSignals_;
  adapters::common::PollLoop loop_;
  SyslogLog log_;
  adapters::common::PosixChildProcesses children_;
  adapters::linux::InstalledHelperFiles files_;
  const adapters::simulated::Faults faults_;
  std::unique_ptr<adapters::common::PollLoop::Watch> endingWatch_;
};

}  // namespace

std::unique_ptr<HelperPlatform> makeHelperPlatform(const BuildFacts& facts) {
  Descriptor ready = takeReadyDescriptor();
  umask(S_IRWXG | S_IRWXO);
  signal(SIGPIPE, SIG_IGN);
  signal(SIGCHLD, SIG_DFL);  // an ignored one would lose how children ended
  Descriptor endingSignals = takeEndingSignals();
  const auto path = ownPath();
  if (!endingSignals || !path) return nullptr;
  // Before anything is read from the folder.
  if (const auto error = adapters::linux::checkInstalledHelper(*path)) {
    SyslogLog(std::string(helper_link::protocol::kMachServiceName)).write(*error);
    return nullptr;
  }
  return std::make_unique<LinuxHelperPlatform>(facts, StateFolder::ofInstalledHelper(*path),
                                               std::move(ready), std::move(endingSignals));
}

}  // namespace pallimo::helper
