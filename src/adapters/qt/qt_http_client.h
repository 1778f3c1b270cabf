// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "base/mutex.h"
#include "ports/http_client.h"

namespace pallimo::adapters::qt {

/// Sends over Qt's sockets, each request on a thread that ends with it; without requests there is
/// neither thread nor anything of Qt's network. Any thread, while there is a QCoreApplication.
///
/// A request goes to its server once, through the proxy that the user has set for its URL, if any.
class QtHttpClient final : public ports::HttpClient {
 public:
  /// Whether the host name has an address; may take its time. Called on the request's thread.
  using NameLookUp = std::function<bool(const std::string& name)>;

  /// Asks the system's resolver.
  QtHttpClient();
  explicit QtHttpClient(NameLookUp hasAddress);
  /// Gives up what is under way and waits neither for a server, nor for a name or the user's
  /// proxies that are being looked up: that thread is left to end by itself.
  ~QtHttpClient() override;

  void send(const ports::HttpRequest& request) override;
  /// The requests that are neither answered nor failed. For whoever waits for them, as tests do.
  std::size_t underWay() const;

 private:
  class Transfer;
  struct Running {
    std::shared_ptr<Transfer> transfer;  ///< shared with the thread
    std::thread thread;
  };

  /// The transfers that have ended, taken out.
  std::vector<Running> takeEnded() PALLIMO_REQUIRES(mutex_);

  const NameLookUp hasAddress_;
  mutable base::Mutex mutex_;
  std::vector<Running> running_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::adapters::qt
