// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/unix_signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <utility>

namespace pallimo::adapters::qt {

namespace {

constexpr std::array<int, 2> kSignals = {SIGINT, SIGTERM};

// The one thing that a signal handler can reach. Lock-free, or it could not be read there.
std::atomic<int> signalPipe = -1;
static_assert(std::atomic<int>::is_always_lock_free);

void makePipe(std::array<int, 2>& ends) {
  if (::pipe(ends.data()) != 0) return;
  for (const int end : ends) {
    ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ::fcntl(end, F_SETFL, O_NONBLOCK);
  }
}

}  // namespace

extern "C" {
static void pallimoSignalArrived(int) {
  const int error = errno;
  const char byte = 0;
  // A full pipe already holds what has to be known.
  [[maybe_unused]] const ssize_t written = ::write(signalPipe.load(), &byte, 1);
  errno = error;
}
}

/// The pipe and the handlers that write into it.
class UnixSignals::Handlers {
 public:
  Handlers() {
    makePipe(pipe_);
    signalPipe = pipe_[1];
    struct sigaction action = {};
    action.sa_handler = pallimoSignalArrived;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (std::size_t at = 0; at < kSignals.size(); ++at) {
      ::sigaction(kSignals[at], &action, &previous_[at]);
    }
  }

  ~Handlers() {
    for (std::size_t at = 0; at < kSignals.size(); ++at) {
      ::sigaction(kSignals[at], &previous_[at], nullptr);
    }
    signalPipe = -1;
    for (const int end : pipe_) ::close(end);
  }

  Handlers(const Handlers&) = delete;
  Handlers& operator=(const Handlers&) = delete;

  int readEnd() const { return pipe_[0]; }

  void drain() const {
    std::array<char, 16> bytes;
    while (::read(pipe_[0], bytes.data(), bytes.size()) > 0) {
    }
  }

 private:
  std::array<int, 2> pipe_ = {-1, -1};
  std::array<struct sigaction, kSignals.size()> previous_ = {};
};

UnixSignals::UnixSignals(std::function<void()> interrupted)
    : interrupted_(std::move(interrupted)),
      handlers_(std::make_unique<Handlers>()),
      notifier_(handlers_->readEnd(), QSocketNotifier::Read) {
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] {
    handlers_->drain();
    interrupted_();
  });
}

UnixSignals::~UnixSignals() = default;

}  // namespace pallimo::adapters::qt
