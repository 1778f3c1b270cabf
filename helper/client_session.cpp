// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/client_session.h"

#include <utility>

namespace pallimo::helper {

ClientSession::ClientSession(Services services, std::string version,
                             std::shared_ptr<ports::HelperPeer> peer)
    : services_(std::move(services)), version_(std::move(version)), peer_(std::move(peer)) {}

ClientSession::~ClientSession() = default;

void ClientSession::end() {
  peer_.reset();
  std::exchange(turns_, {}).clear();
}

void ClientSession::isResponding(std::function<void(bool)> completion) {
  if (peer_) completion(true);
}

void ClientSession::getVersion(std::function<void(std::string)> completion) {
  if (peer_) completion(version_);
}

void ClientSession::requestPowermetrics(double msSampling, bool includeGPU) {
  if (!peer_) return;
  auto run = services_.runs.start(msSampling, includeGPU, ++requests_, [this] {
    const auto self = shared_from_this();
    sendResultsInTurn();
  });
  if (run) {
    turns_.push_back({std::move(run), 0});
  } else if (turns_.empty()) {
    peer_->powermetricsResult(std::nullopt);
  } else {
    ++turns_.back().refusedAfter;
  }
}

void ClientSession::sendResultsInTurn() {
  while (!turns_.empty() && turns_.front().run->isFinished()) {
    auto turn = std::move(turns_.front());
    turns_.pop_front();
    const auto peer = peer_;
    peer->powermetricsResult(turn.run->takeDocument());
    for (; turn.refusedAfter > 0 && peer_; --turn.refusedAfter) {
      peer->powermetricsResult(std::nullopt);
    }
  }
}

void ClientSession::unInstallHelper() {
  const auto self = shared_from_this();
  const auto owner = services_.owner.lock();
  if (peer_ && owner) owner->uninstallRequested(*this);
}

void ClientSession::closeHelper() {
  const auto self = shared_from_this();
  const auto owner = services_.owner.lock();
  if (peer_ && owner) owner->closeRequested(*this);
}

}  // namespace pallimo::helper
