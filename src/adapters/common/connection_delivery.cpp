// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/connection_delivery.h"

#include <utility>

namespace pallimo::adapters::common {

// What is replaced or dropped is destroyed after the lock is given up: a handler may hold the last
// reference to somebody whose destructor comes back here.

void ConnectionDelivery::setExportedObject(
    std::shared_ptr<helper_link::protocol::ClientProtocol> exportedObject) {
  base::MutexLock lock(mutex_);
  if (isEnded_) return;
  handlers_.exportedObject.swap(exportedObject);
}

void ConnectionDelivery::setInvalidationHandler(std::function<void()> handler) {
  base::MutexLock lock(mutex_);
  if (isSilent_) return;
  handlers_.invalidation.swap(handler);
}

void ConnectionDelivery::setInterruptionHandler(std::function<void()> handler) {
  base::MutexLock lock(mutex_);
  if (isEnded_) return;
  handlers_.interruption.swap(handler);
}

void ConnectionDelivery::end() {
  Handlers dropped;
  base::MutexLock lock(mutex_);
  isEnded_ = true;
  dropped.exportedObject.swap(handlers_.exportedObject);
  dropped.interruption.swap(handlers_.interruption);
}

void ConnectionDelivery::silence() {
  Handlers dropped;
  base::MutexLock lock(mutex_);
  isEnded_ = true;
  isSilent_ = true;
  std::swap(dropped, handlers_);
}

void ConnectionDelivery::deliverResult(std::optional<base::Bytes> document) {
  if (isEnded()) return;
  gate_->post([self = shared_from_this(), document = std::move(document)]() mutable {
    if (const auto object = self->exportedObject()) object->powermetricsResult(std::move(document));
  });
}

void ConnectionDelivery::deliverReply(std::function<void()> reply) {
  if (isEnded()) return;
  gate_->post([self = shared_from_this(), reply = std::move(reply)] {
    if (!self->isEnded()) reply();
  });
}

void ConnectionDelivery::deliverInterruption() {
  if (isEnded()) return;
  gate_->post([self = shared_from_this()] {
    if (const auto handler = self->interruptionHandler()) handler();
  });
}

void ConnectionDelivery::deliverInvalidation() {
  if (isSilent()) return;
  gate_->post([self = shared_from_this()] {
    if (const auto handler = self->takeInvalidationHandler()) handler();
  });
}

bool ConnectionDelivery::isEnded() {
  base::MutexLock lock(mutex_);
  return isEnded_ || gate_->isClosed();
}

bool ConnectionDelivery::isSilent() {
  base::MutexLock lock(mutex_);
  return isSilent_ || gate_->isClosed();
}

std::shared_ptr<helper_link::protocol::ClientProtocol> ConnectionDelivery::exportedObject() {
  base::MutexLock lock(mutex_);
  return gate_->isClosed() ? nullptr : handlers_.exportedObject;
}

std::function<void()> ConnectionDelivery::interruptionHandler() {
  base::MutexLock lock(mutex_);
  return gate_->isClosed() ? nullptr : handlers_.interruption;
}

std::function<void()> ConnectionDelivery::takeInvalidationHandler() {
  Handlers dropped;
  std::function<void()> handler;
  base::MutexLock lock(mutex_);
  isEnded_ = true;
  isSilent_ = true;
  if (!gate_->isClosed()) handler.swap(handlers_.invalidation);
  std::swap(dropped, handlers_);
  return handler;
}

}  // namespace pallimo::adapters::common
