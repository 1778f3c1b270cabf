// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/notice_thread.h"

#include <signal.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "adapters/linux/notices/notice_text.h"
#include "adapters/linux/notices/notify_message.h"

namespace pallimo::adapters::linux {

namespace {

constexpr std::uint32_t kPresentSound = 2;
constexpr std::uint32_t kPresentBanner = 16;

/// Rounded up; a delay that is none (0, negative, not a number) is over at once.
std::chrono::milliseconds milliseconds(double seconds) {
  constexpr double kYear = 365.0 * 24 * 3600;
  const double bounded = seconds > 0 ? std::min(seconds, kYear) : 0.0;
  return std::chrono::milliseconds(static_cast<std::int64_t>(std::ceil(bounded * 1000)));
}

}  // namespace

NoticeThread::NoticeThread(ports::Console& console, std::vector<std::string> busAddresses,
                           NoticeLimits limits)
    : console_(console), busAddresses_(std::move(busAddresses)), limits_(limits) {}

void NoticeThread::run() {
  // Signals are the business of the program's own threads; one would break off a connect.
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, nullptr);
  bus_ = std::make_shared<SessionBus>(
      loop_, [this] { return openBus(); }, limits_.answer);
  loop_.run();
  bus_.reset();
  base::MutexLock lock(mutex_);
  hasEnded_ = true;
  ended_.notify_all();
}

void NoticeThread::setDelegate(std::weak_ptr<ports::UserNotificationsDelegate> delegate) {
  base::MutexLock lock(mutex_);
  delegate_ = std::move(delegate);
}

void NoticeThread::add(ports::UserNotification notice) {
  loop_.async([this, notice = std::move(notice)] { accept(notice); });
}

void NoticeThread::end() {
  loop_.async([this] { showAllAndEnd(); });
}

bool NoticeThread::waitForEnd() {
  const auto deadline = std::chrono::steady_clock::now() + 2 * limits_.end;
  base::MutexLock lock(mutex_);
  while (!hasEnded_) {
    if (isTooLate_) {
      ended_.wait(lock);
    } else if (ended_.wait_until(lock, deadline) == std::cv_status::timeout) {
      isTooLate_ = true;
      isAbandoned_ = isOpening_ && !hasEnded_;
      if (isAbandoned_) return false;
    }
  }
  return true;
}

void NoticeThread::accept(ports::UserNotification notice) {
  const auto number = ++lastNumber_;
  const auto delay = milliseconds(notice.delay);
  waiting_.emplace(number, std::move(notice));
  loop_.after(delay, [this, number] { show(number); });
}

void NoticeThread::show(std::uint64_t number) {
  const auto found = waiting_.extract(number);
  if (!found) return;
  const auto& notice = found.mapped();
  const auto presentation = presentationOf(notice);
  if ((presentation & kPresentBanner) == 0) return;
  callDesktop(notice, notice.playsDefaultSound && (presentation & kPresentSound) != 0);
}

// Without a delegate nobody objects: the app's models are gone before its last notice is shown.
std::uint32_t NoticeThread::presentationOf(const ports::UserNotification& notice) {
  std::shared_ptr<ports::UserNotificationsDelegate> delegate;
  {
    base::MutexLock lock(mutex_);
    delegate = delegate_.lock();
  }
  return delegate ? delegate->willPresentNotification(notice) : kPresentBanner | kPresentSound;
}

void NoticeThread::callDesktop(const ports::UserNotification& notice, bool hasSound) {
  auto message = makeNotify(notice.title, notice.subtitle,
                            hasSound ? NoticeSound::kDefault : NoticeSound::kNone);
  if (!message) {
    write(notice);
    return;
  }
  ++underWay_;
  bus_->call(std::move(message), [this, notice](DBusMessage* reply) {
    const bool isShown =
        reply != nullptr && dbus_message_get_type(reply) == DBUS_MESSAGE_TYPE_METHOD_RETURN;
    if (!isShown) write(notice);
    finishOne();
  });
}

void NoticeThread::write(const ports::UserNotification& notice) {
  {
    base::MutexLock lock(mutex_);
    if (isAbandoned_) return;
  }
  console_.writeLine(noticeLine(notice.title, notice.subtitle));
}

void NoticeThread::finishOne() {
  --underWay_;
  if (isEnding_ && underWay_ == 0) loop_.stop();
}

void NoticeThread::showAllAndEnd() {
  while (!waiting_.empty()) show(waiting_.begin()->first);
  isEnding_ = true;
  if (underWay_ == 0) {
    loop_.stop();
  } else {
    loop_.after(limits_.end, [this] { bus_->abandon(); });
  }
}

DBusConnectionPtr NoticeThread::openBus() {
  if (!beginOpening()) return nullptr;
  auto connection = openFirstBus(busAddresses_);
  if (endOpening()) return connection;
  if (connection) dbus_connection_close(connection.get());
  return nullptr;
}

bool NoticeThread::beginOpening() {
  base::MutexLock lock(mutex_);
  isOpening_ = !isTooLate_;
  return isOpening_;
}

bool NoticeThread::endOpening() {
  base::MutexLock lock(mutex_);
  isOpening_ = false;
  return !isAbandoned_;
}

}  // namespace pallimo::adapters::linux
