// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "helper/powermetrics_runs.h"
#include "helper_link/protocol/xpc_protocol.h"
#include "ports/helper_listener.h"
#include "ports/main_queue.h"

namespace pallimo::helper {

/// How many refused requests a session answers before the helper's other work gets its turn.
inline constexpr std::uint64_t kMostRefusalsAtOnce = 256;

/// Answers one client. The helper's one thread.
///
/// Runs stand side by side, but results go back in the order of the requests: the n-th result
/// answers the n-th request, absent ones included. A run that ends early waits for those before it.
/// The app gets its samples in the order of time, and can tell which moment of a recording each
/// result belongs to, although results carry no number.
class ClientSession final : public helper_link::protocol::XPCProtocol,
                            public std::enable_shared_from_this<ClientSession> {
 public:
  /// Decides what concerns the whole helper. Both calls may end the session.
  class Owner {
   public:
    virtual ~Owner() = default;
    virtual void uninstallRequested(ClientSession& session) = 0;
    virtual void closeRequested(ClientSession& session) = 0;
  };

  struct Services {
    ports::MainQueue& mainQueue;
    PowermetricsRuns& runs;
    std::weak_ptr<Owner> owner;
  };

  /// `version` is the answer to getVersion.
  ClientSession(Services services, std::string version, std::shared_ptr<ports::HelperPeer> peer);
  ~ClientSession() override;
  ClientSession(const ClientSession&) = delete;
  ClientSession& operator=(const ClientSession&) = delete;

  /// Ends the client's runs at once and drops their results. From then on the session starts
  /// nothing and answers nobody.
  void end();

  void isResponding(std::function<void(bool)> completion) override;
  void unInstallHelper() override;
  void getVersion(std::function<void(std::string)> completion) override;
  void requestPowermetrics(double msSampling, bool includeGPU) override;
  void closeHelper() override;

 private:
  /// A run and the refused requests that came after it. Those are only counted, so that however
  /// many a client sends while a long run is under way, they take no memory.
  struct Turn {
    std::unique_ptr<PowermetricsRun> run;
    std::uint64_t refusedAfter = 0;
  };

  void sendResultsInTurn();
  /// Answers refused requests that nothing has to come before; returns how many.
  std::uint64_t sendRefusals(std::uint64_t atMost);
  /// Goes on with the results after everything that is queued.
  void pause();

  Services services_;
  const std::string version_;
  std::shared_ptr<ports::HelperPeer> peer_;  // null once ended
  std::uint64_t requests_ = 0;
  std::uint64_t refusedFirst_ = 0;  // refused requests that stand before all turns
  bool isPausing_ = false;
  std::deque<Turn> turns_;
};

}  // namespace pallimo::helper
