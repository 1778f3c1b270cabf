// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/helper_service.h"

#include <algorithm>
#include <utility>

namespace pallimo::helper {

HelperService::HelperService(Services services, Settings settings, std::function<void()> exit)
    : services_(services), settings_(std::move(settings)), exit_(std::move(exit)) {}

bool HelperService::start() {
  if (!services_.listener.start(*this)) return false;
  isListening_ = true;
  if (clients_.empty()) waitForClients();
  return true;
}

void HelperService::end() {
  idleTimer_.reset();
  exit_ = nullptr;
  for (const auto& [peer, session] : clients_) session->end();
}

std::shared_ptr<helper_link::protocol::XPCProtocol> HelperService::accept(
    std::shared_ptr<ports::HelperPeer> peer) {
  idleTimer_.reset();
  auto session = std::make_shared<ClientSession>(
      ClientSession::Services{services_.mainQueue, services_.runs, weak_from_this()},
      settings_.version, peer);
  clients_.emplace(std::move(peer), session);
  return session;
}

void HelperService::disconnected(const std::shared_ptr<ports::HelperPeer>& peer) {
  const auto client = clients_.find(peer);
  if (client == clients_.end()) return;
  const auto session = client->second;
  clients_.erase(client);
  session->end();
  if (isListening_ && clients_.empty()) waitForClients();
  exitIfAlone();
}

void HelperService::uninstallRequested(ClientSession& session) {
  services_.files.removeInstalled();
  closeRequested(session);
}

void HelperService::closeRequested(ClientSession& session) {
  // Listening ends first: a client that comes back at once shall meet the next helper.
  stopListening();
  session.end();
  const auto client = std::find_if(clients_.begin(), clients_.end(), [&session](const auto& entry) {
    return entry.second.get() == &session;
  });
  if (client == clients_.end()) return;
  const auto peer = client->first;
  peer->close();
}

void HelperService::waitForClients() {
  idleTimer_ = services_.mainQueue.every(settings_.idleLimit, [this] {
    idleTimer_.reset();
    stopListening();
    exitIfAlone();
  });
}

void HelperService::stopListening() {
  idleTimer_.reset();
  // Somebody may be accepted in here.
  if (std::exchange(isListening_, false)) services_.listener.stop();
}

void HelperService::exitIfAlone() {
  if (isListening_ || !clients_.empty()) return;
  if (const auto exit = std::exchange(exit_, nullptr)) exit();
}

}  // namespace pallimo::helper
