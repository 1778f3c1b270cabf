// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/make_helper_platform.h"

#include <poll.h>
#include <signal.h>
#include <sys/event.h>
#include <sys/stat.h>

#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include "adapters/common/descriptor.h"
#include "adapters/common/poll_loop.h"
#include "adapters/common/posix_child_processes.h"
#include "adapters/common/syslog_log.h"
#include "helper/macos/launchd_job.h"
#include "helper/macos/xpc_listener.h"
#include "helper_link/protocol/xpc_protocol.h"
#include "signing_requirements.h"

namespace pallimo::helper {

namespace {

using adapters::common::Descriptor;
using adapters::common::PollLoop;

/// Signals that end the helper become readable on the descriptor instead.
Descriptor takeEndingSignals() {
  constexpr std::array<int, 3> kEnding = {SIGTERM, SIGINT, SIGHUP};
  Descriptor queue(kqueue());
  for (const int number : kEnding) {
    struct kevent arrived = {};
    arrived.ident = static_cast<uintptr_t>(number);
    arrived.filter = EVFILT_SIGNAL;
    arrived.flags = EV_ADD;
    if (!queue || kevent(queue.get(), &arrived, 1, nullptr, 0, nullptr) != 0) return {};
    signal(number, SIG_IGN);  // the queue sees it all the same
  }
  return queue;
}

class MacHelperPlatform final : public HelperPlatform {
 public:
  MacHelperPlatform(BuildFacts facts, Descriptor endingSignals)
      : facts_(std::move(facts)),
        endingSignals_(std::move(endingSignals)),
        log_(std::string(helper_link::protocol::kMachServiceName)),
        children_(loop_),
        files_(log_) {
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
    return makeXpcListener(loop_, helper_link::protocol::kMachServiceName,
                           signing::kAppRequirement);
  }

  PowermetricsTool powermetrics() override {
    PowermetricsTool tool;
    tool.path = facts_.powermetricsPath;
    tool.hasAnePower = true;  // since macOS 13, the oldest system that this program starts on
    return tool;
  }

  std::string version() override { return facts_.version; }
  void didStart() override {}  // launchd waits for nobody
  void run() override { loop_.run(); }
  void stop() override { loop_.stop(); }

 private:
  const BuildFacts facts_;
  const Descriptor endingSignals_;
  // Never released: threads of the system may still queue something when the program ends.
  PollLoop& loop_ = *new PollLoop();
  adapters::common::SyslogLog log_;
  adapters::common::PosixChildProcesses children_;
  LaunchdJob files_;
  std::unique_ptr<PollLoop::Watch> endingWatch_;
};

}  // namespace

std::unique_ptr<HelperPlatform> makeHelperPlatform(const BuildFacts& facts) {
  umask(S_IRWXG | S_IRWXO);
  signal(SIGPIPE, SIG_IGN);
  signal(SIGCHLD, SIG_DFL);  // an ignored one would lose how children ended
  Descriptor endingSignals = takeEndingSignals();
  if (!endingSignals) return nullptr;
  return std::make_unique<MacHelperPlatform>(facts, std::move(endingSignals));
}

}  // namespace pallimo::helper
