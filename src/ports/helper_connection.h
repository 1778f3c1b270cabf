// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::ports {

/// One connection from the app to the helper, as thin as the operating system's own.
///
/// Functions may be called from any thread and never block. Handlers, replies and messages to the
/// exported object run on the executor that the connector was built with, in arrival order. A
/// handler is looked up at the moment it is due: one that was cleared before is not called.
/// Destroying the connection is an invalidate() without a handler.
class HelperConnection {
 public:
  virtual ~HelperConnection() = default;

  /// Receives the helper's results; held strongly until the connection is invalidated.
  virtual void setExportedObject(
      std::shared_ptr<helper_link::protocol::ClientProtocol> exportedObject) = 0;
  /// Called once when the connection can't be used any more: nobody serves the name, or
  /// invalidate() was called. An empty function clears it.
  virtual void setInvalidationHandler(std::function<void()> handler) = 0;
  /// Called when the helper dies or ends while connected. An empty function clears it.
  virtual void setInterruptionHandler(std::function<void()> handler) = 0;
  /// Starts the connection; until then nothing is sent. After invalidate() it does nothing.
  virtual void resume() = 0;
  /// Ends the connection: no further result or reply arrives. What was sent before is still
  /// handed to the system.
  virtual void invalidate() = 0;
  /// The helper's messages, or nullptr when the connection has none. What is sent before the
  /// connection stands is kept and sent then. The proxy may outlive the connection: its calls then
  /// do nothing.
  virtual std::shared_ptr<helper_link::protocol::XPCProtocol> remoteObjectProxy() = 0;
};

/// Makes connections to a named service.
class HelperConnector {
 public:
  virtual ~HelperConnector() = default;

  /// A new suspended connection, or nullptr when none can be made. `options` are those of
  /// helper_link::protocol. Returns at once: whether somebody serves the name shows later.
  virtual std::shared_ptr<HelperConnection> connect(std::string_view machServiceName,
                                                    unsigned options) = 0;
};

}  // namespace pallimo::ports
