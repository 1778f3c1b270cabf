// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_helper_connection.h"

#include <optional>
#include <utility>

namespace pallimo::adapters::linux {

namespace {

using helper_link::protocol::ClientProtocol;
using helper_link::protocol::XPCProtocol;

/// The helper's messages. Knows its link weakly, so that calls of an ended connection do nothing.
class HelperProxy final : public XPCProtocol {
 public:
  explicit HelperProxy(std::weak_ptr<DBusHelperLink> link) : link_(std::move(link)) {}

  void isResponding(std::function<void(bool)> completion) override {
    sendWithReply(makeIsResponding(), &readBoolReply, std::move(completion));
  }
  void unInstallHelper() override { send(makeUnInstallHelper()); }
  void getVersion(std::function<void(std::string)> completion) override {
    sendWithReply(makeGetVersion(), &readTextReply, std::move(completion));
  }
  void requestPowermetrics(double msSampling, bool includeGPU) override {
    send(makeRequestPowermetrics(msSampling, includeGPU));
  }
  void closeHelper() override { send(makeCloseHelper()); }

 private:
  void send(DBusMessagePtr message) {
    if (const auto link = link_.lock()) link->send(std::move(message));
  }

  template <class Value>
  void sendWithReply(DBusMessagePtr message, std::optional<Value> (*read)(DBusMessage&),
                     std::function<void(Value)> completion) {
    const auto link = link_.lock();
    if (!link) return;
    link->send(std::move(message), [delivery = link->delivery(), read,
                                    completion = std::move(completion)](DBusMessage& reply) {
      const auto value = read(reply);
      if (value && completion) delivery->deliverReply([completion, value] { completion(*value); });
    });
  }

  const std::weak_ptr<DBusHelperLink> link_;
};

class DBusHelperConnection final : public ports::HelperConnection {
 public:
  explicit DBusHelperConnection(std::shared_ptr<DBusHelperLink> link) : link_(std::move(link)) {}
  ~DBusHelperConnection() override {
    delivery().silence();
    link_->close();
  }

  void setExportedObject(std::shared_ptr<ClientProtocol> exportedObject) override {
    delivery().setExportedObject(std::move(exportedObject));
  }
  void setInvalidationHandler(std::function<void()> handler) override {
    delivery().setInvalidationHandler(std::move(handler));
  }
  void setInterruptionHandler(std::function<void()> handler) override {
    delivery().setInterruptionHandler(std::move(handler));
  }
  void resume() override { link_->resume(); }
  void invalidate() override {
    delivery().end();
    link_->close();
    delivery().deliverInvalidation();
  }
  std::shared_ptr<XPCProtocol> remoteObjectProxy() override {
    return std::make_shared<HelperProxy>(link_);
  }

 private:
  common::ConnectionDelivery& delivery() { return *link_->delivery(); }

  const std::shared_ptr<DBusHelperLink> link_;
};

}  // namespace

DBusHelperConnector::DBusHelperConnector(base::Executor& delivery, const StateFolder& folder,
                                         std::function<HelperStart()> launch, DBusLinkLimits limits)
    : address_(unixSocketAddress(folder.helperSocket())),
      launch_(std::move(launch)),
      limits_(limits),
      gate_(std::make_shared<common::DeliveryGate>(delivery)),
      linkThread_(std::make_shared<DBusLinkThread>()) {
  dbus_threads_init_default();
  // What the program does about SIGPIPE is its own affair; libdbus writes without raising it.
  dbus_connection_set_change_sigpipe(FALSE);
  thread_ = std::thread([thread = linkThread_] { thread->run(); });
}

DBusHelperConnector::~DBusHelperConnector() {
  gate_->close();
  linkThread_->end();
  // Beyond the limit the thread is held up by the system, in connecting to a stopped helper whose
  // queue is full or in starting one. It ends by itself then, touching nothing of ours.
  constexpr int kFactor = 2;
  const bool isOwnThread = thread_.get_id() == std::this_thread::get_id();
  if (!isOwnThread && linkThread_->waitForEnd(kFactor * limits_.flush)) {
    thread_.join();
  } else {
    thread_.detach();
  }
}

std::shared_ptr<ports::HelperConnection> DBusHelperConnector::connect(
    std::string_view machServiceName, unsigned options) {
  namespace protocol = helper_link::protocol;
  const bool isHelper = machServiceName == protocol::kMachServiceName &&
                        (options & protocol::kConnectionPrivileged) != 0;
  auto delivery = std::make_shared<common::ConnectionDelivery>(gate_);
  auto link = std::make_shared<DBusHelperLink>(
      DBusHelperLink::Services{linkThread_, isHelper ? address_ : std::string(), launch_, limits_},
      std::move(delivery));
  return std::make_shared<DBusHelperConnection>(std::move(link));
}

}  // namespace pallimo::adapters::linux
