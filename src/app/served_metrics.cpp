// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/served_metrics.h"

#include <memory>
#include <utility>

#include "base/notification_centre.h"
#include "sensors/sg_system_gpu_info.h"
#include "sensors/sg_system_info.h"
#include "serving/listen_address.h"
#include "serving/measured_figures_teller.h"

namespace pallimo::app {

namespace {

/// The title line stands in for numbers that can't be read; here they are left out.
serving::MachineInfo machineInfo(const Platform& platform, const GeneralModel& general) {
  const modules::ModuleModelMainTitle& title = *general.modelMainTitle();
  const sensors::SGSystemInfo kernel(platform.systemControls);
  serving::MachineInfo machine;
  machine.model = general.modelTemperature()->sensorTmp().machineModel();
  machine.chip = title.appleSiliconName();
  if (title.gpuName() != sensors::kUnknownGPU) machine.gpu = title.gpuName();
  machine.efficiencyCores = kernel.efficiencyCores();
  machine.performanceCores = kernel.performanceCores();
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
      [metrics = metrics_, engine = std::weak_ptr(general.modelPowerMetrics()),
       teller = serving::MeasuredFiguresTeller()](const logging::SampleRow& row) mutable {
        const auto reader = engine.lock();
        if (!reader) return;
        metrics->take({row, teller.tell(*reader, row.isGPUTold), reader->msSampling()});
      });
  cleared_ = platform.notifications.observe(base::notification::kClearData,
                                            [metrics = metrics_] { metrics->clear(); });
}

}  // namespace pallimo::app
