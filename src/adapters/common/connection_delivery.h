// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "adapters/common/delivery_gate.h"
#include "base/bytes.h"
#include "base/mutex.h"
#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::adapters::common {

/// What a connection has to say to the app, brought to the app's own executor in the order in which
/// it was said. Whether a thing is still wanted is looked up when its turn comes: a handler that
/// was cleared meanwhile, or anything of an ended connection, is dropped. Any thread.
class ConnectionDelivery : public std::enable_shared_from_this<ConnectionDelivery> {
 public:
  /// The gate is shared by all deliveries of one connector: once it is closed, nothing is called.
  explicit ConnectionDelivery(std::shared_ptr<DeliveryGate> gate) : gate_(std::move(gate)) {}

  void setExportedObject(std::shared_ptr<helper_link::protocol::ClientProtocol> exportedObject);
  void setInvalidationHandler(std::function<void()> handler);
  void setInterruptionHandler(std::function<void()> handler);

  /// From now on only the invalidation handler is called, if deliverInvalidation() asks for it.
  void end();
  /// From now on nothing is called.
  void silence();

  void deliverResult(std::optional<base::Bytes> document);
  void deliverReply(std::function<void()> reply);
  void deliverInterruption();
  /// Ends the delivery; the handler is called by the first of these alone.
  void deliverInvalidation();

 private:
  struct Handlers {
    std::shared_ptr<helper_link::protocol::ClientProtocol> exportedObject;
    std::function<void()> invalidation;
    std::function<void()> interruption;
  };
  bool isEnded();
  bool isSilent();
  std::shared_ptr<helper_link::protocol::ClientProtocol> exportedObject();
  std::function<void()> interruptionHandler();
  std::function<void()> takeInvalidationHandler();

  const std::shared_ptr<DeliveryGate> gate_;
  base::Mutex mutex_;
  Handlers handlers_ PALLIMO_GUARDED_BY(mutex_);
  bool isEnded_ PALLIMO_GUARDED_BY(mutex_) = false;
  bool isSilent_ PALLIMO_GUARDED_BY(mutex_) = false;
};

}  // namespace pallimo::adapters::common
