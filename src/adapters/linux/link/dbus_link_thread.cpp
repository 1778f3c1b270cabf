// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_link_thread.h"

#include <signal.h>

#include <utility>

#include "adapters/linux/link/dbus_helper_link.h"

namespace pallimo::adapters::linux {

void DBusLinkThread::add(std::shared_ptr<DBusHelperLink> link) {
  if (isEnding_) link->close();
  links_.insert(std::move(link));
}

void DBusLinkThread::remove(const std::shared_ptr<DBusHelperLink>& link) {
  links_.erase(link);
  if (isEnding_ && links_.empty()) loop_.stop();
}

void DBusLinkThread::run() {
  // Signals are the business of the program's own threads; one would break off a connect.
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, nullptr);
  loop_.run();
  for (const auto& link : std::exchange(links_, {})) link->abandon();
  base::MutexLock lock(mutex_);
  hasEnded_ = true;
  ended_.notify_all();
}

void DBusLinkThread::end() {
  loop_.async([this] { closeAll(); });
}

void DBusLinkThread::closeAll() {
  isEnding_ = true;
  const auto links = links_;
  for (const auto& link : links) link->close();
  if (links.empty()) loop_.stop();
}

bool DBusLinkThread::waitForEnd(std::chrono::milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  base::MutexLock lock(mutex_);
  while (!hasEnded_) {
    if (ended_.wait_until(lock, deadline) == std::cv_status::timeout) return hasEnded_;
  }
  return true;
}

}  // namespace pallimo::adapters::linux
