// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_helper_link.h"

#include <algorithm>
#include <utility>

#include "adapters/linux/link/dbus_link_thread.h"

namespace pallimo::adapters::linux {

namespace {

/// libdbus gets no more at once; the rest waits here, where it is counted.
constexpr std::int64_t kWriteAhead = 64 << 10;
/// Between two looks at how much libdbus still has to write.
constexpr std::size_t kWriteBatch = 64;
/// A document of the helper is at most half of this.
constexpr long kLongestMessage = 64L << 20;

class Error {
 public:
  Error() { dbus_error_init(&error_); }
  ~Error() { dbus_error_free(&error_); }
  Error(const Error&) = delete;
  Error& operator=(const Error&) = delete;
  DBusError* get() { return &error_; }
  bool is(const char* name) const { return dbus_error_has_name(&error_, name) != FALSE; }

 private:
  DBusError error_;
};

}  // namespace

DBusHelperLink::DBusHelperLink(Services services,
                               std::shared_ptr<common::ConnectionDelivery> delivery)
    : services_(std::move(services)),
      delivery_(std::move(delivery)),
      pause_(services_.limits.pause) {}

void DBusHelperLink::resume() { onThread(&DBusHelperLink::open); }

void DBusHelperLink::send(DBusMessagePtr message, ReplyReader reader) {
  if (!message) return;
  {
    base::MutexLock lock(mutex_);
    if (isClosedToSenders_ || waiting_.size() >= services_.limits.waitingMessages) return;
    waiting_.push_back({std::move(message), std::move(reader)});
    if (std::exchange(isWriteScheduled_, true)) return;
  }
  onThread(&DBusHelperLink::writeWaiting);
}

void DBusHelperLink::close() {
  {
    base::MutexLock lock(mutex_);
    if (std::exchange(isClosedToSenders_, true)) return;
  }
  onThread(&DBusHelperLink::beginClosing);
}

void DBusHelperLink::onThread(void (DBusHelperLink::*task)()) {
  if (const auto thread = services_.thread.lock()) {
    thread->loop().async([self = shared_from_this(), task] { (self.get()->*task)(); });
  }
}

void DBusHelperLink::afterDelay(std::chrono::milliseconds delay, void (DBusHelperLink::*task)()) {
  if (const auto thread = services_.thread.lock()) {
    thread->loop().after(delay, [weak = weak_from_this(), task] {
      if (const auto self = weak.lock()) (self.get()->*task)();
    });
  }
}

bool DBusHelperLink::hasWaiting() {
  base::MutexLock lock(mutex_);
  return !waiting_.empty();
}

std::size_t DBusHelperLink::takeWaiting(OutgoingQueue& taken, std::size_t most) {
  base::MutexLock lock(mutex_);
  isWriteScheduled_ = false;
  for (; most > 0 && !waiting_.empty(); --most) {
    taken.push_back(std::move(waiting_.front()));
    waiting_.pop_front();
  }
  return taken.size();
}

void DBusHelperLink::dropWaiting() {
  OutgoingQueue dropped;
  base::MutexLock lock(mutex_);
  isClosedToSenders_ = true;
  dropped.swap(waiting_);
}

void DBusHelperLink::open() {
  if (state_ != State::kSuspended) return;
  state_ = State::kOpening;
  openingDeadline_ = SteadyClock::now() + services_.limits.opening;
  if (const auto thread = services_.thread.lock()) thread->add(shared_from_this());
  tryToOpen();
}

void DBusHelperLink::tryToOpen() {
  if (state_ != State::kOpening || channel_) return;
  bool isNobodyServing = false;
  if (connectOnce(&isNobodyServing)) return;
  if (!isNobodyServing || services_.launch() != HelperStart::kStarted) {
    fail();
  } else if (!connectOnce(&isNobodyServing)) {
    tryAgainLater();
  }
}

bool DBusHelperLink::connectOnce(bool* isNobodyServing) {
  const auto thread = services_.thread.lock();
  if (!thread || services_.address.empty()) return false;
  Error error;
  DBusConnectionPtr connection(
      dbus_connection_open_private(services_.address.c_str(), error.get()));
  if (!connection) {
    *isNobodyServing = error.is(DBUS_ERROR_FILE_NOT_FOUND) || error.is(DBUS_ERROR_NO_SERVER);
    return false;
  }
  dbus_connection_set_max_message_size(connection.get(), kLongestMessage);
  dbus_connection_set_max_message_unix_fds(connection.get(), 0);
  channel_ = DBusChannel::attach(thread->loop(), std::move(connection), weak_from_this());
  return channel_ != nullptr;
}

void DBusHelperLink::tryAgainLater() {
  if (SteadyClock::now() >= openingDeadline_) {
    fail();
    return;
  }
  afterDelay(pause_, &DBusHelperLink::tryToOpen);
  pause_ = std::min(2 * pause_, services_.limits.longestPause);
}

void DBusHelperLink::beginClosing() {
  if (state_ == State::kClosed) return;
  isClosing_ = true;
  readers_.clear();
  if (state_ == State::kSuspended || (state_ == State::kOpening && !hasWaiting())) {
    abandon();
    return;
  }
  afterDelay(services_.limits.flush, &DBusHelperLink::abandon);
  writeWaiting();
}

void DBusHelperLink::writeWaiting() {
  if (state_ != State::kOpen) return;
  OutgoingQueue batch;
  while (channel_->outgoingBytes() < kWriteAhead && takeWaiting(batch, kWriteBatch) > 0) {
    for (auto& [message, reader] : batch) {
      const auto serial = channel_->send(*message);
      if (serial && reader && !isClosing_) readers_[*serial] = std::move(reader);
    }
    batch.clear();
  }
  if (isClosing_ && !hasWaiting()) channel_->close(services_.limits.flush);
}

void DBusHelperLink::fail() {
  delivery_->deliverInvalidation();
  finish();
}

void DBusHelperLink::abandon() {
  channel_.reset();
  finish();
}

void DBusHelperLink::finish() {
  state_ = State::kClosed;
  readers_.clear();
  dropWaiting();
  if (const auto thread = services_.thread.lock()) thread->remove(shared_from_this());
}

void DBusHelperLink::channelDidOpen() {
  state_ = State::kOpen;
  writeWaiting();
}

bool DBusHelperLink::channelDidReceive(DBusMessage& message) {
  const int type = dbus_message_get_type(&message);
  if (type == DBUS_MESSAGE_TYPE_METHOD_RETURN || type == DBUS_MESSAGE_TYPE_ERROR) {
    return readReply(message);
  }
  auto result = readPowermetricsResult(message);
  if (!result) return false;
  if (!isClosing_) delivery_->deliverResult(std::move(result->document));
  return true;
}

bool DBusHelperLink::readReply(DBusMessage& message) {
  const auto entry = readers_.find(dbus_message_get_reply_serial(&message));
  if (entry == readers_.end()) return true;
  const auto reader = std::move(entry->second);
  readers_.erase(entry);
  // An error is no answer: as on a Mac, nothing is called then.
  if (dbus_message_get_type(&message) == DBUS_MESSAGE_TYPE_METHOD_RETURN) reader(message);
  return true;
}

void DBusHelperLink::channelDidProgress() {
  if (state_ == State::kOpen) writeWaiting();
}

void DBusHelperLink::channelDidClose() {
  channel_.reset();
  if (state_ == State::kOpening) {
    // A helper that was ending, or had no room: nothing was sent to it.
    tryAgainLater();
  } else if (state_ == State::kOpen) {
    if (!isClosing_) delivery_->deliverInterruption();
    finish();
  }
}

}  // namespace pallimo::adapters::linux
