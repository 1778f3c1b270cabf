// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/faults/faulty_helper_listener.h"

#include <cstdint>
#include <string>
#include <utility>

namespace pallimo::adapters::simulated {

namespace {

using helper_link::protocol::XPCProtocol;

/// What all clients of one helper have in common.
struct Life {
  Faults faults;
  std::function<void()> die;
  std::uint64_t requests = 0;

  bool isFatalRequest() { return ++requests == faults.helperDiesOnRequest; }
};

class FaultyHelper final : public XPCProtocol {
 public:
  FaultyHelper(std::shared_ptr<Life> life, std::shared_ptr<XPCProtocol> inner)
      : life_(std::move(life)), inner_(std::move(inner)) {}

  void isResponding(std::function<void(bool)> completion) override {
    if (life_->faults.helperSilent) return;
    if (life_->faults.helperAnswersNo) return completion(false);
    inner_->isResponding(std::move(completion));
  }
  void unInstallHelper() override { inner_->unInstallHelper(); }
  void getVersion(std::function<void(std::string)> completion) override {
    if (!life_->faults.helperVersion) return inner_->getVersion(std::move(completion));
    inner_->getVersion([completion = std::move(completion), claimed = *life_->faults.helperVersion](
                           const std::string&) { completion(claimed); });
  }
  void requestPowermetrics(double msSampling, bool includeGPU) override {
    if (life_->isFatalRequest()) return life_->die();
    inner_->requestPowermetrics(msSampling, includeGPU);
  }
  void closeHelper() override { inner_->closeHelper(); }

 private:
  const std::shared_ptr<Life> life_;
  const std::shared_ptr<XPCProtocol> inner_;
};

}  // namespace

class FaultyHelperListener::FaultyDelegate final : public ports::HelperListener::Delegate {
 public:
  explicit FaultyDelegate(std::shared_ptr<Life> life) : life_(std::move(life)) {}

  void passTo(Delegate& delegate) { delegate_ = &delegate; }

  std::shared_ptr<XPCProtocol> accept(std::shared_ptr<ports::HelperPeer> peer) override {
    auto inner = delegate_->accept(std::move(peer));
    return inner ? std::make_shared<FaultyHelper>(life_, std::move(inner)) : nullptr;
  }
  void disconnected(const std::shared_ptr<ports::HelperPeer>& peer) override {
    delegate_->disconnected(peer);
  }

 private:
  const std::shared_ptr<Life> life_;
  Delegate* delegate_ = nullptr;
};

FaultyHelperListener::FaultyHelperListener(std::unique_ptr<ports::HelperListener> inner,
                                           Faults faults, std::function<void()> die)
    : delegate_(std::make_unique<FaultyDelegate>(
          std::make_shared<Life>(Life{std::move(faults), std::move(die)}))),
      inner_(std::move(inner)) {}

FaultyHelperListener::~FaultyHelperListener() = default;

bool FaultyHelperListener::start(Delegate& delegate) {
  delegate_->passTo(delegate);
  return inner_->start(*delegate_);
}

void FaultyHelperListener::stop() { inner_->stop(); }

}  // namespace pallimo::adapters::simulated
