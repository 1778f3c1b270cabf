// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "analytics/matomo_tracker.h"
#include "app/start/platform.h"
#include "helper_link/xpc_manager.h"
#include "logging/log_file_model.h"
#include "logging/sample_rows.h"
#include "modules/module_model_frequency.h"
#include "modules/module_model_main_title.h"
#include "modules/module_model_more_button.h"
#include "modules/module_model_power.h"
#include "modules/module_model_temperature.h"
#include "modules/module_model_utilization.h"
#include "ports/url_opener.h"
#include "sampling/sg_power_metrics.h"
#include "updates/sparkle_updater.h"

namespace pallimo::app {

/// The composition root: creates and owns every model and wires them, all links between them being
/// weak. Nothing samples until the helper manager finds the helper usable. Its last act tells the
/// analytics server that the app was started, where the platform lets it.
///
/// Built and read on the main thread; the platform's parts outlive it.
class GeneralModel {
 public:
  explicit GeneralModel(const Platform& platform);
  GeneralModel(const GeneralModel&) = delete;
  GeneralModel& operator=(const GeneralModel&) = delete;

  /// Whether the machine can sample at all.
  helper_link::Processor processor() const { return processor_; }

  const std::shared_ptr<logging::LogFileModel>& logfileModel() const { return logfileModel_; }
  const std::shared_ptr<sampling::SGPowerMetrics>& modelPowerMetrics() const {
    return modelPowerMetrics_;
  }
  const std::shared_ptr<helper_link::XPCManager>& xpcmanager() const { return xpcmanager_; }
  const std::shared_ptr<modules::ModuleModelPower>& modelPower() const { return modelPower_; }
  const std::shared_ptr<modules::ModuleModelFrequency>& modelFrequency() const {
    return modelFrequency_;
  }
  const std::shared_ptr<modules::ModuleModelTemperature>& modelTemperature() const {
    return modelTemperature_;
  }
  const std::shared_ptr<modules::ModuleModelUtilization>& modelUtilization() const {
    return modelUtilization_;
  }
  const std::shared_ptr<modules::ModuleModelMainTitle>& modelMainTitle() const {
    return modelMainTitle_;
  }
  const std::shared_ptr<modules::ModuleModelMoreButton>& modelMoreButton() const {
    return modelMoreButton_;
  }
  const std::shared_ptr<updates::SparkleUpdater>& sparkle() const { return sparkle_; }
  const std::shared_ptr<logging::SampleRows>& sampleRows() const { return sampleRows_; }

  // What menus offer; each hands one address to whatever opens it. Main thread.
  /// A new e-mail to the support.
  void contactDeveloper();
  /// The store page of "Corvix Stats".
  void openStorePage();
  /// The maker's page on the social network.
  void openSocialPage();

  /// The app is about to end: tells the helper to stop. Sampling is not stopped separately.
  void applicationWillTerminate();

 private:
  void wire();

  ports::UrlOpener& urlOpener_;
  // In the order of creation.
  const helper_link::Processor processor_;
  const std::shared_ptr<logging::LogFileModel> logfileModel_;
  const std::shared_ptr<sampling::SGPowerMetrics> modelPowerMetrics_;
  const std::shared_ptr<helper_link::XPCManager> xpcmanager_;
  const std::shared_ptr<modules::ModuleModelPower> modelPower_;
  const std::shared_ptr<modules::ModuleModelFrequency> modelFrequency_;
  const std::shared_ptr<modules::ModuleModelTemperature> modelTemperature_;
  const std::shared_ptr<modules::ModuleModelUtilization> modelUtilization_;
  const std::shared_ptr<modules::ModuleModelMainTitle> modelMainTitle_;
  const std::shared_ptr<modules::ModuleModelMoreButton> modelMoreButton_;
  const std::shared_ptr<updates::SparkleUpdater> sparkle_;
  /// Reads the models above, so it comes after them.
  const std::shared_ptr<logging::SampleRows> sampleRows_;
  analytics::MatomoTracker tracker_;
};

}  // namespace pallimo::app
