// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper_link/xpc_manager.h"

#include <string>
#include <utility>

#include "base/fatal.h"

namespace pallimo::helper_link {

std::shared_ptr<XPCManager> XPCManager::create(const Services& services) {
  std::shared_ptr<XPCManager> manager(new XPCManager(services));
  if (services.processor == Processor::appleSilicon) {
    manager->client_->setDelegate(manager);
    manager->observeInstallationNotices();
  }
  return manager;
}

XPCManager::XPCManager(const Services& services)
    : services_(services), client_(XPCClient::create(services.client)) {}

XPCManager::~XPCManager() { services_.client.console.writeLine("DEINIT XPCManager"); }

void XPCManager::setContentModelDelegate(std::weak_ptr<ContentModelDelegate> delegate) {
  base::MutexLock lock(mutex_);
  contentModelDelegate_ = std::move(delegate);
}

void XPCManager::setMorebuttonModelDelegate(std::weak_ptr<MoreButtonModelDelegate> delegate) {
  base::MutexLock lock(mutex_);
  morebuttonModelDelegate_ = std::move(delegate);
}

void XPCManager::setPowerMetricsModelDelegate(std::weak_ptr<PowerMetricsModelDelegate> delegate) {
  base::MutexLock lock(mutex_);
  powerMetricsModelDelegate_ = std::move(delegate);
}

void XPCManager::setUtilizationModelDelegate(std::weak_ptr<UtilizationModelDelegate> delegate) {
  base::MutexLock lock(mutex_);
  utilizationModelDelegate_ = std::move(delegate);
}

std::shared_ptr<ContentModelDelegate> XPCManager::contentModelDelegate() const {
  base::MutexLock lock(mutex_);
  return contentModelDelegate_.lock();
}

std::shared_ptr<PowerMetricsModelDelegate> XPCManager::powerMetricsModelDelegate() const {
  base::MutexLock lock(mutex_);
  return powerMetricsModelDelegate_.lock();
}

std::shared_ptr<UtilizationModelDelegate> XPCManager::utilizationModelDelegate() const {
  base::MutexLock lock(mutex_);
  return utilizationModelDelegate_.lock();
}

std::shared_ptr<MoreButtonModelDelegate> XPCManager::morebuttonModelDelegate() const {
  base::MutexLock lock(mutex_);
  return morebuttonModelDelegate_.lock();
}

void XPCManager::publishContent() const {
  if (auto content = contentModelDelegate()) content->update();
}

void XPCManager::observeInstallationNotices() {
  base::NotificationCentre& notices = services_.client.notifications;
  didInstall_ = notices.observe(base::notification::kXPCDidInstall, [weak = weak_from_this()] {
    if (auto manager = weak.lock()) manager->helperDidInstall();
  });
  installError_ = notices.observe(base::notification::kXPCInstallError, [weak = weak_from_this()] {
    if (auto manager = weak.lock()) manager->helperInstallError();
  });
}

void XPCManager::helperDidInstall() {
  isAuthorized_ = true;
  applyAuthorization();
}

void XPCManager::helperInstallError() {
  isAuthorized_ = false;
  applyAuthorization();
}

void XPCManager::applyAuthorization() {
  isRequestedToUninstall_ = false;
  if (!isAuthorized_) {
    services_.mainQueue.async([&notices = services_.client.notifications] {
      notices.post(base::notification::kClearData);
    });
  }
  tellEngine();
  publishContent();
  if (auto menu = morebuttonModelDelegate()) menu->notifyChange();
}

void XPCManager::tellEngine() {
  const auto engine = powerMetricsModelDelegate();
  if (!engine) return;
  // Looked at again afterwards: a re-evaluation on another thread may have told the engine between
  // the look and the call, and the older word would stand until the next re-evaluation.
  for (bool told = isAuthorized_;;) {
    engine->setAuthorized(told);
    const bool now = isAuthorized_;
    if (now == told) return;
    told = now;
  }
}

void XPCManager::requestPowermetrics(bool includeGPU, double msSampling) {
  if (isInert()) return;
  client_->requestPowermetrics(includeGPU, msSampling);
}

void XPCManager::checkHelperAtStart(std::weak_ptr<ContentModelDelegate> contentModel) {
  if (isInert()) return;
  setContentModelDelegate(std::move(contentModel));
  client_->askIsResponding([weak = weak_from_this()](bool isResponding) {
    auto manager = weak.lock();
    if (manager && isResponding) manager->checkVersionAtStart();
  });
}

void XPCManager::checkVersionAtStart() {
  const auto finish = [weak = weak_from_this()](bool isSameVersion) {
    if (auto manager = weak.lock()) manager->finishCheckAtStart(isSameVersion);
  };
  client_->checkVersion(finish, weak_from_this());
}

void XPCManager::finishCheckAtStart(bool isSameVersion) {
  if (!isSameVersion) {
    isUpdateNeeded_ = true;
    publishContent();
    return;
  }
  isAuthorized_ = true;
  applyAuthorization();
  services_.mainQueue.async([weak = weak_from_this()] {
    if (auto manager = weak.lock()) manager->publishContent();
  });
}

void XPCManager::installHelper() {
  if (isInert()) return;
  services_.client.console.writeLine("INSTALL HELPER");
  const ports::AuthorizationAttempt attempt = services_.authorization.createAuthorization();
  if (attempt.status != 0) {
    services_.client.systemLog.write("[PWMJBS]: Authorization failed with status code " +
                                     std::to_string(attempt.status));
  }
  if (attempt.status != 0 || !attempt.token) base::fatal("Authorization not acquired.");
  isInstallationRefused_ = !services_.installer.bless(protocol::kMachServiceName, *attempt.token);
  if (isInstallationRefused_) {
    services_.client.notifications.post(base::notification::kXPCInstallError);
  }
  client_->isResponding();
}

void XPCManager::closeHelper() {
  if (isInert()) return;
  client_->closeHelper();
}

void XPCManager::uninstallHelper() {
  if (isInert()) return;
  services_.backgroundQueue.async([weak = weak_from_this()] {
    if (auto manager = weak.lock()) manager->scheduleRemoval();
  });
}

void XPCManager::scheduleRemoval() {
  services_.mainQueue.async([weak = weak_from_this()] {
    if (auto manager = weak.lock()) manager->prepareRemoval();
  });
  services_.mainQueue.after(kRemovalDelay, [weak = weak_from_this()] {
    if (auto manager = weak.lock()) manager->client_->uninstall([](bool) {});
  });
}

void XPCManager::prepareRemoval() {
  if (auto engine = powerMetricsModelDelegate()) engine->stopTimer();
  isUpdateNeeded_ = false;
  publishContent();
  isRequestedToUninstall_ = true;
}

void XPCManager::updateHelper() {
  if (isInert()) return;
  uninstallHelper();
  services_.mainQueue.after(kInstallationDelay, [weak = weak_from_this()] {
    if (auto manager = weak.lock()) manager->installHelper();
  });
}

}  // namespace pallimo::helper_link
