// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::ports {

/// One client that is connected to the helper.
class HelperPeer : public helper_link::protocol::ClientProtocol {
 public:
  /// Hands what was sent to the system, then ends the connection. The listener still reports the
  /// peer as gone, later.
  virtual void close() = 0;
};

/// The helper's end of the link: lets in who may talk to the helper, and nobody else. Everything is
/// called on the helper's one thread.
class HelperListener {
 public:
  /// Who decides what clients get.
  class Delegate {
   public:
    virtual ~Delegate() = default;

    /// A client has connected and is admitted: returns the object that answers it.
    virtual std::shared_ptr<helper_link::protocol::XPCProtocol> accept(
        std::shared_ptr<HelperPeer> peer) = 0;
    /// The client is gone. Called once for every accepted peer; the peer's calls then do nothing.
    virtual void disconnected(const std::shared_ptr<HelperPeer>& peer) = 0;
  };

  virtual ~HelperListener() = default;

  /// Begins to serve; false when another helper serves already or the name can't be had.
  virtual bool start(Delegate& delegate) = 0;
  /// Stops listening: from now on whoever connects meets another helper or none. Clients that
  /// reached this helper before are still accepted, before this returns.
  virtual void stop() = 0;
};

}  // namespace pallimo::ports
