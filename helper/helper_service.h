// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "helper/client_session.h"
#include "helper/powermetrics_runs.h"
#include "ports/helper_files.h"
#include "ports/helper_listener.h"
#include "ports/main_queue.h"

namespace pallimo::helper {

/// Who is served, and when the helper ends. The helper's one thread. Lives in a std::shared_ptr and
/// must outlive the listener.
///
/// It listens until it has been without a client for a while, or until a client tells it to close
/// or to uninstall itself. Then it stops listening first and ends when nobody is left: clients that
/// reached it before are served until they go, those of other apps included. So whoever connects
/// meets a helper that stays, or none.
class HelperService final : public ports::HelperListener::Delegate,
                            public ClientSession::Owner,
                            public std::enable_shared_from_this<HelperService> {
 public:
  struct Services {
    ports::MainQueue& mainQueue;
    ports::HelperListener& listener;
    ports::HelperFiles& files;
    PowermetricsRuns& runs;
  };

  struct Settings {
    std::string version;                        ///< the answer to getVersion
    std::chrono::milliseconds idleLimit{5000};  ///< how long it stays without a client
  };

  /// `exit` is called once, when the helper shall end.
  HelperService(Services services, Settings settings, std::function<void()> exit);

  /// Begins to serve; false when another helper serves already.
  bool start();
  /// Ends the runs of all clients at once, and answers nobody any more.
  void end();

  std::shared_ptr<helper_link::protocol::XPCProtocol> accept(
      std::shared_ptr<ports::HelperPeer> peer) override;
  void disconnected(const std::shared_ptr<ports::HelperPeer>& peer) override;

  void uninstallRequested(ClientSession& session) override;
  void closeRequested(ClientSession& session) override;

 private:
  void waitForClients();
  void stopListening();
  void exitIfAlone();

  const Services services_;
  const Settings settings_;
  std::function<void()> exit_;  // empty once called
  bool isListening_ = false;
  /// Those who were sent away stay in it until they are reported gone.
  std::map<std::shared_ptr<ports::HelperPeer>, std::shared_ptr<ClientSession>> clients_;
  std::unique_ptr<ports::RepeatingTimer> idleTimer_;  // while listening without clients
};

}  // namespace pallimo::helper
