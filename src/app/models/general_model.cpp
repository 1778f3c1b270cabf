// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/models/general_model.h"

#include <string>

#include "sensors/sg_system_info.h"
#include "ui/addresses.h"

namespace pallimo::app {

namespace {

helper_link::Processor processorOf(const Platform& platform) {
  return sensors::SGSystemInfo(platform.systemControls).isAppleSilicon()
             ? helper_link::Processor::appleSilicon
             : helper_link::Processor::other;
}

sampling::SGPowerMetrics::Services engineServices(const Platform& platform) {
  return {platform.mainQueue, platform.notifications, platform.defaults, platform.propertyLists};
}

helper_link::XPCManager::Services managerServices(const Platform& platform,
                                                  helper_link::Processor processor) {
  const helper_link::XPCClient::Services client = {platform.helperConnector, platform.bundle,
                                                   platform.notifications, platform.systemLog,
                                                   platform.console};
  return {client,
          platform.mainQueue,
          platform.backgroundQueue,
          platform.authorizationServices,
          platform.helperInstaller,
          processor};
}

logging::LogFileModel::Services logServices(const Platform& platform) {
  return {platform.mainQueue,
          platform.backgroundQueue,
          platform.defaults,
          platform.files,
          platform.clock,
          platform.console,
          platform.userNotifications,
          platform.randomNumbers};
}

analytics::MatomoTracker::Services trackerServices(const Platform& platform) {
  return {platform.analyticsClient,
          platform.defaults,
          platform.systemControls,
          platform.screens,
          platform.processInformation,
          platform.randomNumbers,
          platform.clock,
          platform.bundle};
}

}  // namespace

GeneralModel::GeneralModel(const Platform& platform)
    : urlOpener_(platform.urlOpener),
      processor_(processorOf(platform)),
      logfileModel_(logging::LogFileModel::create(logServices(platform))),
      modelPowerMetrics_(sampling::SGPowerMetrics::create(engineServices(platform))),
      xpcmanager_(helper_link::XPCManager::create(managerServices(platform, processor_))),
      modelPower_(modules::ModuleModelPower::create(platform.notifications, modelPowerMetrics_)),
      modelFrequency_(
          modules::ModuleModelFrequency::create(platform.notifications, modelPowerMetrics_)),
      modelTemperature_(modules::ModuleModelTemperature::create(
          platform.notifications,
          {platform.systemControls, platform.smcDevice, platform.hidSensors})),
      modelUtilization_(modules::ModuleModelUtilization::create(
          platform.notifications, modelPowerMetrics_,
          {platform.processorTicks, platform.accelerators})),
      modelMainTitle_(modules::ModuleModelMainTitle::create(
          {platform.systemControls, platform.accelerators, platform.programLauncher,
           platform.propertyLists})),
      modelMoreButton_(modules::ModuleModelMoreButton::create(platform.mainQueue)),
      sparkle_(updates::SparkleUpdater::create({platform.softwareUpdater, platform.console})),
      sampleRows_(std::make_shared<logging::SampleRows>(
          platform.clock, logging::SampleRows::Models{*modelPower_, *modelFrequency_,
                                                      *modelTemperature_, *modelUtilization_})),
      tracker_(trackerServices(platform), std::string(platform.analyticsURL)) {
  wire();
  tracker_.track();
}

void GeneralModel::wire() {
  xpcmanager_->setMorebuttonModelDelegate(modelMoreButton_);
  xpcmanager_->setPowerMetricsModelDelegate(modelPowerMetrics_);
  xpcmanager_->setUtilizationModelDelegate(modelUtilization_);
  modelPowerMetrics_->setGate(xpcmanager_);
  modelPowerMetrics_->setFanout({.power = modelPower_,
                                 .utilization = modelUtilization_,
                                 .frequency = modelFrequency_,
                                 .temperature = modelTemperature_,
                                 .log = sampleRows_});
  sampleRows_->addReceiver([weak = std::weak_ptr(logfileModel_)](const logging::LogRow& row) {
    if (const auto log = weak.lock()) log->appendRow(row);
  });
}

void GeneralModel::contactDeveloper() { urlOpener_.open(ui::kSupportAddress); }

void GeneralModel::openStorePage() { urlOpener_.open(ui::kStoreAddress); }

void GeneralModel::openSocialPage() { urlOpener_.open(ui::kSocialAddress); }

void GeneralModel::applicationWillTerminate() { xpcmanager_->closeHelper(); }

}  // namespace pallimo::app
