// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/general_model.h"

#include "sensors/apple_silicon.h"

namespace pallimo::app {

namespace {

helper_link::Processor processorOf(const Platform& platform) {
  return sensors::isAppleSilicon(platform.systemControls) ? helper_link::Processor::appleSilicon
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
  return {client, platform.mainQueue, platform.helperInstaller, processor};
}

}  // namespace

GeneralModel::GeneralModel(const Platform& platform)
    : processor_(processorOf(platform)),
      modelPowerMetrics_(sampling::SGPowerMetrics::create(engineServices(platform))),
      xpcmanager_(helper_link::XPCManager::create(managerServices(platform, processor_))),
      modelPower_(modules::ModuleModelPower::create(platform.notifications, modelPowerMetrics_)),
      modelFrequency_(
          modules::ModuleModelFrequency::create(platform.notifications, modelPowerMetrics_)),
      sampleRows_(std::make_shared<logging::SampleRows>(
          platform.clock, logging::SampleRows::Models{modelPower_, modelFrequency_})) {
  wire();
}

void GeneralModel::wire() {
  xpcmanager_->setPowerMetricsModelDelegate(modelPowerMetrics_);
  modelPowerMetrics_->setGate(xpcmanager_);
  sampling::SGPowerMetrics::Fanout fanout;
  fanout.power = modelPower_;
  fanout.frequency = modelFrequency_;
  fanout.log = sampleRows_;
  modelPowerMetrics_->setFanout(std::move(fanout));
}

void GeneralModel::applicationWillTerminate() {
  // Elsewhere no helper was ever contacted, and none is started to be closed.
  if (processor_ != helper_link::Processor::appleSilicon) return;
  helper_link::XPCClient& client = xpcmanager_->client();
  // From here on the helper ends because we want it to, which is no loss to report.
  if (const auto connection = client.connection()) connection->setInterruptionHandler(nullptr);
  client.closeHelper();
}

}  // namespace pallimo::app
