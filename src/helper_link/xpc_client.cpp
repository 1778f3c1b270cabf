// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper_link/xpc_client.h"

#include <string>
#include <utility>

#include "helper_link/embedded_helper_version.h"
#include "helper_link/xpc_manager.h"

namespace pallimo::helper_link {

namespace {

// The handlers go first: our own invalidation is no failure and must not be reported as one.
void end(ports::HelperConnection& connection) {
  connection.setInterruptionHandler(nullptr);
  connection.setInvalidationHandler(nullptr);
  connection.invalidate();
}

void publishContent(const XPCManager& manager) {
  if (auto content = manager.contentModelDelegate()) content->update();
}

}  // namespace

std::shared_ptr<XPCClient> XPCClient::create(const Services& services) {
  return std::shared_ptr<XPCClient>(new XPCClient(services));
}

XPCClient::XPCClient(const Services& services) : services_(services) {}

XPCClient::~XPCClient() = default;

void XPCClient::setDelegate(std::weak_ptr<XPCManager> delegate) {
  base::MutexLock lock(mutex_);
  delegate_ = std::move(delegate);
}

std::shared_ptr<XPCManager> XPCClient::manager() const {
  base::MutexLock lock(mutex_);
  return delegate_.lock();
}

std::weak_ptr<ports::HelperConnection> XPCClient::openConnection() const {
  base::MutexLock lock(mutex_);
  return connection_;
}

std::shared_ptr<ports::HelperConnection> XPCClient::connection() {
  {
    base::MutexLock lock(mutex_);
    if (connection_) return connection_;
  }
  const auto fresh =
      services_.connector.connect(protocol::kMachServiceName, protocol::kConnectionPrivileged);
  if (!fresh) return nullptr;
  prepare(fresh);
  // Stored before it is resumed: a handler can only run afterwards, so that a connection that
  // fails at once is never stored after its failure was handled.
  std::shared_ptr<ports::HelperConnection> winner;
  {
    base::MutexLock lock(mutex_);
    if (!connection_) connection_ = fresh;
    winner = connection_;
  }
  // The loser is resumed too: the system does not let go of a connection that is still suspended.
  fresh->resume();
  if (winner != fresh) end(*fresh);
  return winner;
}

void XPCClient::prepare(const std::shared_ptr<ports::HelperConnection>& fresh) {
  const std::weak_ptr<ports::HelperConnection> built = fresh;
  fresh->setExportedObject(shared_from_this());
  fresh->setInvalidationHandler(
      [client = shared_from_this(), built] { client->connectionInvalidationHandler(built); });
  fresh->setInterruptionHandler(
      [client = shared_from_this(), built] { client->connetionInterruptionHandler(built); });
}

std::shared_ptr<protocol::XPCProtocol> XPCClient::proxy() {
  const auto current = connection();
  return current ? current->remoteObjectProxy() : nullptr;
}

void XPCClient::requestPowermetrics(bool includeGPU, double msSampling) {
  if (auto helper = proxy()) helper->requestPowermetrics(msSampling, includeGPU);
}

void XPCClient::askIsResponding(std::function<void(bool)> completion) {
  if (auto helper = proxy()) helper->isResponding(std::move(completion));
}

void XPCClient::isResponding() {
  const auto asked = connection();
  const auto helper = asked ? asked->remoteObjectProxy() : nullptr;
  {
    base::MutexLock lock(mutex_);
    probed_ = helper ? asked : nullptr;
  }
  if (!helper) return;
  const std::weak_ptr<ports::HelperConnection> probed = asked;
  helper->isResponding([client = shared_from_this(), probed](bool isResponding) {
    if (isResponding) {
      if (auto manager = client->manager()) {
        manager->setUpdateNeeded(false);
        publishContent(*manager);
      }
      client->services_.notifications.post(base::notification::kXPCDidInstall);
    }
    // By name: whoever heard the announcement may have opened the next connection already.
    client->dropConnection(probed);
  });
}

bool XPCClient::isProbeOpen() const {
  base::MutexLock lock(mutex_);
  return connection_ && connection_ == probed_.lock();
}

void XPCClient::uninstall(std::function<void(bool)> completion) {
  dropConnection(openConnection());
  const auto helper = proxy();
  if (helper) helper->unInstallHelper();
  if (completion) completion(helper != nullptr);
}

void XPCClient::checkVersion(std::function<void(bool)> completion,
                             std::weak_ptr<XPCManager> manager) {
  std::optional<std::string> embedded = embeddedHelperVersion(services_.bundle);
  if (auto helper = proxy()) {
    helper->getVersion([completion = std::move(completion), embedded = std::move(embedded)](
                           const std::string& running) { completion(embedded == running); });
    return;
  }
  if (auto target = manager.lock()) {
    target->setUpdateNeeded(true);
    publishContent(*target);
  }
  completion(false);
}

void XPCClient::closeHelper() {
  const auto last = connection();
  const auto helper = last ? last->remoteObjectProxy() : nullptr;
  if (!helper) return;
  last->setInterruptionHandler(nullptr);
  helper->closeHelper();
}

void XPCClient::powermetricsResult(std::optional<base::Bytes> document) {
  const auto target = manager();
  if (!target) return;
  if (auto engine = target->powerMetricsModelDelegate()) engine->handleResult(std::move(document));
}

void XPCClient::connetionInterruptionHandler(const std::weak_ptr<ports::HelperConnection>& failed) {
  services_.systemLog.write("[XPCTEST] XPCClient: connection has been interrupted XPCTEST");
  dropConnection(failed);
  services_.notifications.post(base::notification::kXPCInstallError);
  services_.console.writeLine("connetionInterruptionHandler");
}

// An invalidation alone withdraws nothing: a helper that was never there, or that is being
// replaced, must not look like one that was lost. Hence no notice here.
void XPCClient::connectionInvalidationHandler(
    const std::weak_ptr<ports::HelperConnection>& failed) {
  services_.systemLog.write("[XPCTEST] XPCClient: connection has been invalidated XPCTEST");
  dropConnection(failed);
  services_.console.writeLine("connectionInvalidationHandler");
}

// The slot is emptied first: from then on nobody is handed the connection that is ending. Whoever
// empties it ends the connection, so that of two threads that drop the same one only one does; one
// that never got into the slot is ended by its builder.
void XPCClient::dropConnection(const std::weak_ptr<ports::HelperConnection>& named) {
  const auto dropped = named.lock();
  if (!dropped) return;
  {
    base::MutexLock lock(mutex_);
    if (connection_ != dropped) return;
    connection_ = nullptr;
  }
  end(*dropped);
}

}  // namespace pallimo::helper_link
