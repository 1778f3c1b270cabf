// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/machine_report.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "app/diagnosis/impatient_accelerator_registry.h"
#include "base/text_format.h"
#include "base/utf8.h"
#include "sensors/sg_system_gpu_info.h"
#include "sensors/sg_system_info.h"
#include "sensors/sg_system_profiler.h"
#include "sensors/sgm1_sensor_temperature.h"
#include "sensors/temperature_tables.h"

namespace pallimo::app {

namespace {

constexpr std::string_view kModel = "hw.model";
constexpr std::string_view kChip = "machdep.cpu.brand_string";
constexpr std::string_view kUnreadable = "can't be read";

std::optional<std::string> kernelText(const ports::SystemControls& controls,
                                      std::string_view name) {
  const std::optional<base::Bytes> value = controls.bytes(name);
  return value ? base::textBeforeNul(*value) : std::nullopt;
}

std::string countOf(const std::optional<std::int32_t>& count) {
  return count ? std::to_string(*count) : std::string(kUnreadable);
}

std::string celsius(const sensors::TemperatureReadings& readings, const std::string& key) {
  const auto found = readings.find(key);
  return found == readings.end() ? "no value" : base::formatFixed(found->second, 1) + " C";
}

std::string figuresOf(const sensors::TemperatureReadings& readings) {
  if (readings.empty()) return "no sensor";
  const auto byValue = [](const auto& left, const auto& right) {
    return left.second < right.second;
  };
  const auto [lowest, highest] = std::minmax_element(readings.begin(), readings.end(), byValue);
  const std::string coolest = base::formatFixed(lowest->second, 1);
  if (readings.size() == 1) return "1 sensor, " + coolest + " C";
  return std::to_string(readings.size()) + " sensors, " + coolest + " to " +
         base::formatFixed(highest->second, 1) + " C";
}

}  // namespace

bool MachineReport::isAppleSilicon() const {
  return sensors::SGSystemInfo(platform_.systemControls).isAppleSilicon();
}

bool MachineReport::findsTemperatures() const {
  const std::optional<std::string> model = kernelText(platform_.systemControls, kModel);
  if (!isAppleSilicon() || !model || !kernelText(platform_.systemControls, kChip)) return false;
  // Without a client the readings would stop the program; on the SMC nobody asks for one.
  if (sensors::SGM1SensorTemperature::chooseSensorType(*model) ==
      sensors::SGM1SensorTemperature::kSMC) {
    return true;
  }
  return platform_.hidSensors.createClient() != nullptr;
}

void MachineReport::write(ReportText& report) const {
  writeSystem(report);
  writeMachine(report);
  writeTemperature(report);
}

void MachineReport::writeSystem(ReportText& report) const {
  report.section("System");
  report.foreignLine("version", platform_.processInformation.operatingSystemVersionString());
  report.foreignLine("kernel's build", textOf("kern.osversion"));
}

void MachineReport::writeMachine(ReportText& report) const {
  report.section("Machine");
  report.productLine("model", textOf(kModel));
  report.productLine("chip", textOf(kChip));
  const sensors::SGSystemInfo kernel(platform_.systemControls);
  const auto other = kernel.otherProcessorName();
  report.line("processor", other ? *other : "Apple silicon");
  report.line("efficiency cores", countOf(kernel.efficiencyCores()));
  report.line("performance cores", countOf(kernel.performanceCores()));
  const auto ticks = platform_.processorTicks.read();
  report.line("processors counted",
              ticks ? std::to_string(ticks->size()) : std::string(kUnreadable));
  writeGpu(report);
}

void MachineReport::writeGpu(ReportText& report) const {
  ImpatientAcceleratorRegistry registry(platform_.accelerators);
  const auto gpu = sensors::SGSystemGPUInfo(registry).readGPUInfo();
  report.productLine("GPU", gpu ? gpu->name : "none of Apple's with statistics");
  if (registry.hasGivenUp()) report.line("accelerators", kUnreadable);
  const std::int64_t cores =
      sensors::SGSystemProfiler(platform_.programLauncher, platform_.propertyLists).gpuCoreCount();
  report.line("GPU cores", cores < 0 ? "unknown" : std::to_string(cores));
}

void MachineReport::writeTemperature(ReportText& report) const {
  report.section("Temperature");
  if (!hasTemperatures()) {
    report.line("source", isAppleSilicon() ? kUnreadable : "not asked on this processor");
    return;
  }
  sensors::SGM1SensorTemperature temperatures(
      {platform_.systemControls, platform_.smcDevice, platform_.hidSensors});
  const sensors::TemperatureReadings cpu = temperatures.readCPUTemperatures();
  const sensors::TemperatureReadings gpu = temperatures.readGPUTemperatures();
  const sensors::SGM1SMCSensorTemperature* smc = temperatures.smcTmp();
  report.line("source", smc != nullptr ? "SMC" : "IOHIDService");
  report.line("CPU", figuresOf(cpu));
  report.line("GPU", figuresOf(gpu));
  if (smc == nullptr) {
    for (const auto& entry : cpu) report.line(entry.first, "CPU  " + celsius(cpu, entry.first));
    for (const auto& entry : gpu) report.line(entry.first, "GPU  " + celsius(gpu, entry.first));
    return;
  }
  report.line("keys found", std::to_string(smc->availableTemperatureKeys().size()));
  for (const auto& [key, type] : smc->availableTemperatureKeys()) {
    const bool isCpu = sensors::isCPUTemperatureKey(key);
    report.line(key, (isCpu ? "CPU  " : "GPU  ") + report.shown(type) + "  " +
                         celsius(isCpu ? cpu : gpu, key));
  }
}

std::string MachineReport::textOf(std::string_view kernelVariable) const {
  return kernelText(platform_.systemControls, kernelVariable).value_or(std::string(kUnreadable));
}

}  // namespace pallimo::app
