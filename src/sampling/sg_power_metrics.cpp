// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sampling/sg_power_metrics.h"

#include <chrono>
#include <cmath>
#include <utility>

#include "ports/settings_keys.h"
#include "sampling/sample_parser.h"

namespace pallimo::sampling {

namespace {

// Fixed, whatever the sampling period is: the period only sets how long each run measures.
constexpr std::chrono::milliseconds kRequestInterval{1000};

constexpr double kDefaultPeriod = 500;
constexpr double kShortestPeriod = 100;

double periodFor(double stored) {
  // Not-a-number counts as absent, and absent reads as 0.
  if (std::isnan(stored) || stored == 0) return kDefaultPeriod;
  return stored < kShortestPeriod ? kShortestPeriod : stored;
}

void ingest(const std::weak_ptr<SampleConsumer>& module) {
  if (const auto consumer = module.lock()) consumer->ingestSample();
}

}  // namespace

std::shared_ptr<SGPowerMetrics> SGPowerMetrics::create(const Services& services) {
  std::shared_ptr<SGPowerMetrics> engine(new SGPowerMetrics(services));
  engine->defaultsChange_ =
      services.defaults.observeChanges([weak = std::weak_ptr<SGPowerMetrics>(engine)] {
        if (const auto self = weak.lock()) self->readSettings();
      });
  engine->readSettings();
  return engine;
}

SGPowerMetrics::SGPowerMetrics(const Services& services)
    : services_(services), data_(std::make_shared<const base::PropertyList>()) {}

SGPowerMetrics::~SGPowerMetrics() = default;

void SGPowerMetrics::setGate(std::weak_ptr<helper_link::SamplingGate> gate) {
  gate_ = std::move(gate);
}

void SGPowerMetrics::setFanout(Fanout fanout) { fanout_ = std::move(fanout); }

SGPowerMetrics::Settings SGPowerMetrics::storedSettings() const {
  const ports::UserDefaults& defaults = services_.defaults;
  return {defaults.boolForKey(ports::settings_key::kGpuFrequency),
          periodFor(defaults.doubleForKey(ports::settings_key::kSamplingResolution))};
}

void SGPowerMetrics::readSettings() {
  // Looked at again afterwards: a change on another thread may have come between the look and the
  // store, and the older value would stand until the next change.
  for (Settings settings = storedSettings();;) {
    includeGPU_ = settings.includeGPU;
    const bool isNewPeriod = msSampling_.exchange(settings.msSampling) != settings.msSampling;
    if (isNewPeriod) postOnMainQueue(base::notification::kClearData);
    const Settings now = storedSettings();
    if (now == settings) return;
    settings = now;
  }
}

void SGPowerMetrics::postOnMainQueue(std::string_view notice) {
  services_.mainQueue.async([weak = weak_from_this(), notice] {
    if (const auto self = weak.lock()) self->services_.notifications.post(notice);
  });
}

void SGPowerMetrics::setAuthorized(bool flag) {
  if (!flag) {
    // Queued without a look at the timer: a start may be waiting in the queue.
    services_.mainQueue.async([weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->stopTimer();
    });
    return;
  }
  if (hasTimer_) return;
  services_.mainQueue.async([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->isAuthorized_ = true;
    self->startTimer();
  });
}

void SGPowerMetrics::startTimer() {
  timer_.reset();
  timer_ = services_.mainQueue.every(kRequestInterval, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->requestSample();
  });
  hasTimer_ = true;
  requestSample();
}

void SGPowerMetrics::stopTimer() {
  isAuthorized_ = false;
  timer_.reset();
  hasTimer_ = false;
}

std::shared_ptr<helper_link::SamplingGate> SGPowerMetrics::openGate() const {
  auto gate = gate_.lock();
  return gate && gate->isOpen() ? gate : nullptr;
}

void SGPowerMetrics::requestSample() {
  if (const auto gate = openGate()) gate->requestPowermetrics(includeGPU_, msSampling_);
}

void SGPowerMetrics::handleResult(std::optional<base::Bytes> bytes) {
  if (!bytes) {
    ++emptyResults_;
    return;
  }
  auto sample = std::make_shared<const base::PropertyList>(parseSample(services_.reader, *bytes));
  {
    base::MutexLock lock(mutex_);
    data_.swap(sample);  // the previous sample is freed after the lock is let go
  }
  if (openGate()) distribute();
}

void SGPowerMetrics::distribute() {
  ingest(fanout_.power);
  ingest(fanout_.utilization);
  ingest(fanout_.frequency);
  ingest(fanout_.temperature);
  if (const auto log = fanout_.log.lock()) log->appendRow();
  postOnMainQueue(base::notification::kUpdateView);
}

std::shared_ptr<const base::PropertyList> SGPowerMetrics::data() const {
  base::MutexLock lock(mutex_);
  return data_;
}

PowerValues SGPowerMetrics::getPowerValues() const { return powerValues(*data()); }

ClusterFrequencies SGPowerMetrics::getClusterFrequencies() const {
  return clusterFrequencies(*data());
}

GPUFrequency SGPowerMetrics::getGPUFrequency() const { return gpuFrequency(*data()); }

ClusterCPUs SGPowerMetrics::getClusterCPUs() const { return clusterCPUs(*data()); }

std::vector<Cluster> SGPowerMetrics::getClusters() const { return allClusters(*data()); }

}  // namespace pallimo::sampling
