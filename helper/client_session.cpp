// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/client_session.h"

#include <algorithm>
#include <utility>

namespace pallimo::helper {

ClientSession::ClientSession(Services services, std::string version,
                             std::shared_ptr<ports::HelperPeer> peer)
    : services_(std::move(services)), version_(std::move(version)), peer_(std::move(peer)) {}

ClientSession::~ClientSession() = default;

void ClientSession::end() {
  peer_.reset();
  refusedFirst_ = 0;
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
  } else if (!turns_.empty()) {
    ++turns_.back().refusedAfter;
  } else if (refusedFirst_ > 0) {
    ++refusedFirst_;
  } else {
    peer_->powermetricsResult(std::nullopt);
  }
}

void ClientSession::sendResultsInTurn() {
  if (isPausing_) return;
  std::uint64_t left = kMostRefusalsAtOnce;
  while (peer_) {
    left -= sendRefusals(left);
    if (refusedFirst_ > 0) return pause();
    if (turns_.empty() || !turns_.front().run->isFinished()) return;
    const auto turn = std::move(turns_.front());
    turns_.pop_front();
    refusedFirst_ = turn.refusedAfter;
    const auto peer = peer_;
    peer->powermetricsResult(turn.run->takeDocument());
  }
}

std::uint64_t ClientSession::sendRefusals(std::uint64_t atMost) {
  const std::uint64_t count = std::min(refusedFirst_, atMost);
  const auto peer = peer_;
  for (std::uint64_t sent = 0; sent < count && peer_; ++sent) {
    --refusedFirst_;
    peer->powermetricsResult(std::nullopt);
  }
  return count;
}

void ClientSession::pause() {
  isPausing_ = true;
  services_.mainQueue.async([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->isPausing_ = false;
    self->sendResultsInTurn();
  });
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
