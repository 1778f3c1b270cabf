// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/served_metrics.h"

#include <utility>

#include "base/notification_centre.h"
#include "sensors/sg_system_info.h"
#include "serving/listen_address.h"
#include "serving/measured_figures_teller.h"

namespace pallimo::app {

namespace {

std::optional<std::int64_t> coresIn(const sensors::SGSystemInfo& kernel, const char* variable) {
  const auto count = kernel.sysctlInt32(variable);
  return count ? std::optional<std::int64_t>(*count) : std::nullopt;
}

/// The title line stands in for numbers that can't be read; here they are left out.
serving::MachineInfo machineInfo(const Platform& platform, const GeneralModel& general) {
  const modules::ModuleModelMainTitle& title = *general.modelMainTitle();
  const sensors::SGSystemInfo kernel(platform.systemControls);
  serving::MachineInfo machine;
  machine.model = general.modelTemperature()->sensorTmp().machineModel();
  machine.chip = title.appleSiliconName();
  if (title.gpuName() != "Unknown") machine.gpu = title.gpuName();
  machine.efficiencyCores = coresIn(kernel, "hw.perflevel1.logicalcpu");
  machine.performanceCores = coresIn(kernel, "hw.perflevel0.logicalcpu");
  if (title.numberOfGPUCore() >= 0) machine.gpuCores = title.numberOfGPUCore();
  return machine;
}

}  // namespace

ServedMetrics::ServedMetrics(std::string version)
    : metrics_(std::make_shared<serving::CurrentMetrics>(std::move(version))) {}

std::optional<StartError> ServedMetrics::listen(const Platform& platform,
                                                const ports::ListenAddress& address) {
  const auto problem =
      platform.metricsServer.listen(address, [metrics = metrics_] { return metrics->families(); });
  if (!problem) return std::nullopt;
  return StartError{"can't serve on " + serving::textOf(address) + ": " + *problem};
}

void ServedMetrics::follow(const Platform& platform, GeneralModel& general) {
  metrics_->setMachine(machineInfo(platform, general), general.xpcmanager());
  general.sampleRows()->addReceiver(
      [metrics = metrics_, reader = general.modelPowerMetrics(),
       utilization = general.modelUtilization(),
       teller = serving::MeasuredFiguresTeller()](const logging::LogRow& row) mutable {
        const bool isGPUTold = utilization->figures().isGPUTold;
        metrics->take({row, teller.tell(*reader, isGPUTold), reader->msSampling()});
      });
  cleared_ = platform.notifications.observe(base::notification::kClearData,
                                            [metrics = metrics_] { metrics->clear(); });
}

}  // namespace pallimo::app
