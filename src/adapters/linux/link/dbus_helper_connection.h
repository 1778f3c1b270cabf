// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "adapters/linux/installation/helper_launcher.h"
#include "adapters/linux/installation/state_folder.h"
#include "adapters/linux/link/dbus_helper_link.h"
#include "adapters/linux/link/dbus_link_thread.h"
#include "base/executor.h"
#include "ports/helper_connection.h"

namespace pallimo::adapters::linux {

/// The app's end of the link: connections to the helper that listens in a state folder, over D-Bus
/// without a bus. Any thread.
///
/// The one name it knows is the helper's, with the privileged option; a connection to anything else
/// is invalidated as soon as it is resumed. When nobody listens, the installed helper is started;
/// messages sent meanwhile are kept. A connection that stands is interrupted when the helper goes,
/// and is no further use then. Calls wait for ever; an error in reply calls nothing.
///
/// One thread, owned by the connector, does the work of all its connections; each can be destroyed
/// on any thread without waiting.
class DBusHelperConnector final : public ports::HelperConnector {
 public:
  /// Everything is delivered on `delivery`, which must outlive the connector. `launch` starts the
  /// helper, usually a HelperLauncher; it is called on the connector's thread.
  DBusHelperConnector(base::Executor& delivery, const StateFolder& folder,
                      std::function<HelperStart()> launch, DBusLinkLimits limits = {});
  /// Silences its connections. Waits until what was sent is written, or the limit for that has
  /// passed: the time for it at the program's end.
  ~DBusHelperConnector() override;
  DBusHelperConnector(const DBusHelperConnector&) = delete;
  DBusHelperConnector& operator=(const DBusHelperConnector&) = delete;

  std::shared_ptr<ports::HelperConnection> connect(std::string_view machServiceName,
                                                   unsigned options) override;

 private:
  const std::string address_;
  const std::function<HelperStart()> launch_;
  const DBusLinkLimits limits_;
  const std::shared_ptr<common::DeliveryGate> gate_;
  const std::shared_ptr<DBusLinkThread> linkThread_;
  std::thread thread_;
};

}  // namespace pallimo::adapters::linux
