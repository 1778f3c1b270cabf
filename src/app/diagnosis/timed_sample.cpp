// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/timed_sample.h"

#include <utility>

#include "helper_link/sampling_gate.h"
#include "logging/sample_rows.h"
#include "modules/module_model_frequency.h"
#include "modules/module_model_power.h"
#include "modules/module_model_temperature.h"
#include "modules/module_model_utilization.h"
#include "sampling/sample_steps.h"

namespace pallimo::app {

/// Looks at the clock at the end of each stage; the first one begins with start().
class TimedSample::Watch {
 public:
  explicit Watch(const ports::Clock& clock) : clock_(clock) {}

  void start() { last_ = clock_.now(); }
  void ends(std::string_view stage) {
    const auto now = clock_.now();
    stages_.push_back({stage, now - last_});
    last_ = now;
  }
  std::vector<Stage> take() { return std::exchange(stages_, {}); }

 private:
  const ports::Clock& clock_;
  std::chrono::system_clock::time_point last_;
  std::vector<Stage> stages_;
};

/// Open for results; sends nothing.
class TimedSample::Gate final : public helper_link::SamplingGate {
 public:
  bool isAuthorized() const override { return true; }
  bool isRequestedToUninstall() const override { return false; }
  void requestPowermetrics(bool, double) override {}
};

namespace {

/// A step of the engine's with the stages that end before and after it.
template <typename Watch>
class TimedStep final : public sampling::SampleConsumer {
 public:
  TimedStep(std::shared_ptr<Watch> watch, std::shared_ptr<sampling::SampleConsumer> module,
            std::string_view name, std::string_view before)
      : watch_(std::move(watch)), module_(std::move(module)), name_(name), before_(before) {}

  void ingestSample() override {
    if (!before_.empty()) watch_->ends(before_);
    module_->ingestSample();
    watch_->ends(name_);
  }

 private:
  const std::shared_ptr<Watch> watch_;
  const std::shared_ptr<sampling::SampleConsumer> module_;
  const std::string_view name_;
  const std::string_view before_;
};

template <typename Watch>
class TimedRow final : public sampling::RowLog {
 public:
  TimedRow(std::shared_ptr<Watch> watch, std::shared_ptr<sampling::RowLog> rows)
      : watch_(std::move(watch)), rows_(std::move(rows)) {}

  void appendRow() override {
    rows_->appendRow();
    watch_->ends("row");
  }

 private:
  const std::shared_ptr<Watch> watch_;
  const std::shared_ptr<sampling::RowLog> rows_;
};

}  // namespace

struct TimedSample::Modules {
  Modules(const Platform& platform, ports::AcceleratorRegistry& accelerators,
          const std::shared_ptr<sampling::SGPowerMetrics>& engine,
          const std::shared_ptr<Watch>& watch)
      : power(modules::ModuleModelPower::create(platform.notifications, engine)),
        utilization(modules::ModuleModelUtilization::create(
            platform.notifications, engine, {platform.processorTicks, accelerators})),
        frequency(modules::ModuleModelFrequency::create(platform.notifications, engine)),
        temperature(modules::ModuleModelTemperature::create(
            platform.notifications,
            {platform.systemControls, platform.smcDevice, platform.hidSensors})),
        rows(std::make_shared<logging::SampleRows>(
            platform.clock,
            logging::SampleRows::Models{*power, *frequency, *temperature, *utilization})),
        // The engine parses before its first step.
        timedPower(step(watch, power, "power", "parse")),
        timedUtilization(step(watch, utilization, "utilisation")),
        timedFrequency(step(watch, frequency, "frequency")),
        timedTemperature(step(watch, temperature, "temperature")),
        timedRow(std::make_shared<TimedRow<Watch>>(watch, rows)) {}

  static std::shared_ptr<sampling::SampleConsumer> step(
      const std::shared_ptr<Watch>& watch, const std::shared_ptr<sampling::SampleConsumer>& module,
      std::string_view name, std::string_view before = {}) {
    return std::make_shared<TimedStep<Watch>>(watch, module, name, before);
  }

  const std::shared_ptr<modules::ModuleModelPower> power;
  const std::shared_ptr<modules::ModuleModelUtilization> utilization;
  const std::shared_ptr<modules::ModuleModelFrequency> frequency;
  const std::shared_ptr<modules::ModuleModelTemperature> temperature;
  const std::shared_ptr<logging::SampleRows> rows;
  const std::shared_ptr<sampling::SampleConsumer> timedPower;
  const std::shared_ptr<sampling::SampleConsumer> timedUtilization;
  const std::shared_ptr<sampling::SampleConsumer> timedFrequency;
  const std::shared_ptr<sampling::SampleConsumer> timedTemperature;
  const std::shared_ptr<sampling::RowLog> timedRow;
};

TimedSample::TimedSample(const Platform& platform)
    : accelerators_(platform.accelerators),
      watch_(std::make_shared<Watch>(platform.clock)),
      gate_(std::make_shared<Gate>()),
      engine_(sampling::SGPowerMetrics::create(
          {platform.mainQueue, platform.notifications, platform.defaults, platform.propertyLists})),
      modules_(std::make_unique<const Modules>(platform, accelerators_, engine_, watch_)) {
  engine_->setGate(gate_);
  engine_->setFanout({.power = modules_->timedPower,
                      .utilization = modules_->timedUtilization,
                      .frequency = modules_->timedFrequency,
                      .temperature = modules_->timedTemperature,
                      .log = modules_->timedRow});
}

TimedSample::~TimedSample() = default;

std::vector<TimedSample::Stage> TimedSample::take(const base::Bytes& document) {
  watch_->start();
  engine_->handleResult(document);
  return watch_->take();
}

}  // namespace pallimo::app
