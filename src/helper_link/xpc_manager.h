// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <atomic>
#include <chrono>
#include <memory>

#include "base/mutex.h"
#include "base/notification_centre.h"
#include "base/subscription.h"
#include "helper_link/delegates.h"
#include "helper_link/sampling_gate.h"
#include "helper_link/xpc_client.h"
#include "ports/authorization_services.h"
#include "ports/background_queue.h"
#include "ports/helper_installer.h"
#include "ports/main_queue.h"

namespace pallimo::helper_link {

/// Whether the machine can run the helper at all.
enum class Processor { appleSilicon, other };

/// Knows whether the helper is present, current and usable; the rest of the app reads its flags.
///
/// The flags are atomics: replies set them on the delivery thread, the main thread reads them.
/// On a processor that is not Apple silicon the manager stays inert.
class XPCManager final : public SamplingGate, public std::enable_shared_from_this<XPCManager> {
 public:
  /// What the manager and its client use; all of it outlives the manager.
  struct Services {
    XPCClient::Services client;
    ports::MainQueue& mainQueue;
    ports::BackgroundQueue& backgroundQueue;
    ports::AuthorizationServices& authorization;
    ports::HelperInstaller& installer;
    Processor processor;
  };

  /// How long after uninstallHelper() the helper is told to remove itself, and after updateHelper()
  /// the embedded one is installed: times of the main queue.
  static constexpr std::chrono::milliseconds kRemovalDelay{1000};
  static constexpr std::chrono::milliseconds kInstallationDelay{2000};

  static std::shared_ptr<XPCManager> create(const Services& services);
  /// Writes "DEINIT XPCManager" to the console.
  ~XPCManager() override;

  XPCClient& client() { return *client_; }

  void setContentModelDelegate(std::weak_ptr<ContentModelDelegate> delegate);
  void setMorebuttonModelDelegate(std::weak_ptr<MoreButtonModelDelegate> delegate);
  void setPowerMetricsModelDelegate(std::weak_ptr<PowerMetricsModelDelegate> delegate);
  void setUtilizationModelDelegate(std::weak_ptr<UtilizationModelDelegate> delegate);
  std::shared_ptr<ContentModelDelegate> contentModelDelegate() const;
  std::shared_ptr<PowerMetricsModelDelegate> powerMetricsModelDelegate() const;
  std::shared_ptr<UtilizationModelDelegate> utilizationModelDelegate() const;

  bool isAuthorized() const override { return isAuthorized_; }
  bool isRequestedToUninstall() const override { return isRequestedToUninstall_; }
  bool isUpdateNeeded() const { return isUpdateNeeded_; }
  void setUpdateNeeded(bool flag) { isUpdateNeeded_ = flag; }

  void requestPowermetrics(bool includeGPU, double msSampling) override;

  /// Asks the helper whether it answers and which version it is; a helper of the right version
  /// authorises. The content model registers itself here.
  void checkHelperAtStart(std::weak_ptr<ContentModelDelegate> contentModel);

  /// Obtains the administrator's consent, installs the embedded helper and probes it. Main thread.
  /// Stops the program when no authorisation can be had at all.
  void installHelper();
  /// Whether the last installHelper() could not install: declined by the administrator, or failed.
  /// Main thread.
  bool isInstallationRefused() const { return isInstallationRefused_; }

  /// Stops sampling and, a second later, tells the helper over a fresh connection to remove itself.
  /// The panels stay, without new samples, until the connection is interrupted. Any thread.
  void uninstallHelper();
  /// uninstallHelper(), and installHelper() two seconds from now. Only these delays, no replies,
  /// put the steps in order: the installation may begin before the removal has ended. Any thread.
  void updateHelper();

  /// Tells the helper to stop, since the app is about to end. Elsewhere than on Apple silicon no
  /// helper was ever contacted, and none is started to be closed.
  void closeHelper();

 private:
  explicit XPCManager(const Services& services);

  void observeInstallationNotices();
  void helperDidInstall();
  void helperInstallError();
  void applyAuthorization();
  void tellEngine();
  void checkVersionAtStart();
  void finishCheckAtStart(bool isSameVersion);
  void scheduleRemoval();
  void prepareRemoval();
  void publishContent() const;
  bool isInert() const { return services_.processor != Processor::appleSilicon; }
  std::shared_ptr<MoreButtonModelDelegate> morebuttonModelDelegate() const;

  const Services services_;
  const std::shared_ptr<XPCClient> client_;

  mutable base::Mutex mutex_;
  std::weak_ptr<ContentModelDelegate> contentModelDelegate_ PALLIMO_GUARDED_BY(mutex_);
  std::weak_ptr<MoreButtonModelDelegate> morebuttonModelDelegate_ PALLIMO_GUARDED_BY(mutex_);
  std::weak_ptr<PowerMetricsModelDelegate> powerMetricsModelDelegate_ PALLIMO_GUARDED_BY(mutex_);
  std::weak_ptr<UtilizationModelDelegate> utilizationModelDelegate_ PALLIMO_GUARDED_BY(mutex_);

  std::atomic<bool> isRequestedToUninstall_ = false;
  std::atomic<bool> isUpdateNeeded_ = false;
  std::atomic<bool> isAuthorized_ = false;

  // Owned by the main thread.
  bool isInstallationRefused_ = false;

  base::Subscription didInstall_;
  base::Subscription installError_;
};

}  // namespace pallimo::helper_link
