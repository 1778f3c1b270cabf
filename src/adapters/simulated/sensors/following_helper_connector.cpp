// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/following_helper_connector.h"

#include <atomic>
#include <optional>
#include <utility>

#include "base/bytes.h"
#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::adapters::simulated {

namespace {

using helper_link::protocol::ClientProtocol;
using helper_link::protocol::XPCProtocol;

/// Counts the results of one connection, whoever it exports.
class ResultCount {
 public:
  explicit ResultCount(FollowingHelperConnector::BeforeResult beforeResult)
      : beforeResult_(std::move(beforeResult)) {}

  void countOne() { beforeResult_(++delivered_); }

 private:
  const FollowingHelperConnector::BeforeResult beforeResult_;
  std::atomic<std::uint64_t> delivered_ = 0;
};

class FollowingClient final : public ClientProtocol {
 public:
  FollowingClient(std::shared_ptr<ResultCount> count, std::shared_ptr<ClientProtocol> client)
      : count_(std::move(count)), client_(std::move(client)) {}

  void powermetricsResult(std::optional<base::Bytes> document) override {
    count_->countOne();
    client_->powermetricsResult(std::move(document));
  }

 private:
  const std::shared_ptr<ResultCount> count_;
  const std::shared_ptr<ClientProtocol> client_;
};

class FollowingConnection final : public ports::HelperConnection {
 public:
  FollowingConnection(std::shared_ptr<ports::HelperConnection> inner,
                      FollowingHelperConnector::BeforeResult beforeResult)
      : inner_(std::move(inner)), count_(std::make_shared<ResultCount>(std::move(beforeResult))) {}

  void setExportedObject(std::shared_ptr<ClientProtocol> exportedObject) override {
    if (exportedObject) {
      exportedObject = std::make_shared<FollowingClient>(count_, std::move(exportedObject));
    }
    inner_->setExportedObject(std::move(exportedObject));
  }
  void setInvalidationHandler(std::function<void()> handler) override {
    inner_->setInvalidationHandler(std::move(handler));
  }
  void setInterruptionHandler(std::function<void()> handler) override {
    inner_->setInterruptionHandler(std::move(handler));
  }
  void resume() override { inner_->resume(); }
  void invalidate() override { inner_->invalidate(); }
  std::shared_ptr<XPCProtocol> remoteObjectProxy() override { return inner_->remoteObjectProxy(); }

 private:
  const std::shared_ptr<ports::HelperConnection> inner_;
  const std::shared_ptr<ResultCount> count_;
};

}  // namespace

FollowingHelperConnector::FollowingHelperConnector(ports::HelperConnector& inner,
                                                   BeforeResult beforeResult)
    : inner_(inner), beforeResult_(std::move(beforeResult)) {}

std::shared_ptr<ports::HelperConnection> FollowingHelperConnector::connect(
    std::string_view machServiceName, unsigned options) {
  auto connection = inner_.connect(machServiceName, options);
  if (!connection) return nullptr;
  return std::make_shared<FollowingConnection>(std::move(connection), beforeResult_);
}

}  // namespace pallimo::adapters::simulated
