// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "base/bytes.h"
#include "base/mutex.h"
#include "base/notification_centre.h"
#include "helper_link/protocol/xpc_protocol.h"
#include "ports/bundle.h"
#include "ports/console.h"
#include "ports/helper_connection.h"
#include "ports/system_log.h"

namespace pallimo::helper_link {

class XPCManager;

/// Owns the one connection to the helper, which carries both directions: requests out, results in.
///
/// Outgoing calls may come from any thread and never block; results, replies and failure handlers
/// arrive on the connector's executor. No outgoing call reports an error: without a proxy it does
/// not happen.
///
/// An open connection holds the client, as its exported object and in its handlers: the client
/// lives at least until the connection is dropped.
class XPCClient final : public protocol::ClientProtocol,
                        public std::enable_shared_from_this<XPCClient> {
 public:
  /// What the client uses; all of it outlives the client.
  struct Services {
    ports::HelperConnector& connector;
    ports::Bundle& bundle;
    base::NotificationCentre& notifications;
    ports::SystemLog& systemLog;
    ports::Console& console;
  };

  static std::shared_ptr<XPCClient> create(const Services& services);
  /// Lets everything go without sending anything.
  ~XPCClient() override;

  /// The owning manager; set once, before anything is sent.
  void setDelegate(std::weak_ptr<XPCManager> delegate);

  /// The connection, built and resumed when there is none; nullptr when none can be made. When
  /// two threads build one at the same time the first to finish wins and the other is ended.
  std::shared_ptr<ports::HelperConnection> connection();

  void requestPowermetrics(bool includeGPU, double msSampling);
  /// The start-up check's question; the reply comes on the executor, or never.
  void askIsResponding(std::function<void(bool)> completion);
  /// The probe after an installation: announces a helper that answers, then drops the connection
  /// that was asked whatever the answer, so that a later call meets the freshly installed helper.
  /// A connection that was opened meanwhile stays. What is sent between announcement and drop, as
  /// the first request may be, still goes over the connection that is about to be dropped: its
  /// result is lost, and the first sample then comes a second later.
  void isResponding();
  /// Whether the last probe can still be answered: the connection that was asked stands.
  bool isProbeOpen() const;
  /// Drops the connection, opens a fresh one and tells the helper to remove itself. The completion
  /// learns whether the message was sent, not whether the removal succeeded.
  void uninstall(std::function<void(bool)> completion);
  /// Reports whether the helper's version equals that of the embedded helper, to the letter.
  void checkVersion(std::function<void(bool)> completion, std::weak_ptr<XPCManager> manager);
  /// Tells the helper to stop, over a connection that is made if there is none. From here on the
  /// helper ends because it is told to: that connection reports no interruption any more.
  void closeHelper();

  void powermetricsResult(std::optional<base::Bytes> document) override;

 private:
  explicit XPCClient(const Services& services);

  /// The connection in use, if there is one.
  std::weak_ptr<ports::HelperConnection> openConnection() const;
  std::shared_ptr<protocol::XPCProtocol> proxy();
  void prepare(const std::shared_ptr<ports::HelperConnection>& fresh);
  // The handlers name the connection that failed, so that one which is already running when
  // another thread replaces its connection leaves the new one alone.
  void connetionInterruptionHandler(const std::weak_ptr<ports::HelperConnection>& failed);
  void connectionInvalidationHandler(const std::weak_ptr<ports::HelperConnection>& failed);
  /// Ends the connection of that name if it is the one in use.
  void dropConnection(const std::weak_ptr<ports::HelperConnection>& named);
  std::shared_ptr<XPCManager> manager() const;

  const Services services_;

  mutable base::Mutex mutex_;
  std::weak_ptr<XPCManager> delegate_ PALLIMO_GUARDED_BY(mutex_);
  std::shared_ptr<ports::HelperConnection> connection_ PALLIMO_GUARDED_BY(mutex_);
  std::weak_ptr<ports::HelperConnection> probed_ PALLIMO_GUARDED_BY(mutex_);
  /// Never assigned: one connection carries both directions.
  std::shared_ptr<ports::HelperConnection> connection2_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::helper_link
