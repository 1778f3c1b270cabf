// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/notification_centre.h"
#include "fakes/fake_sampling_gate.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_user_defaults.h"
#include "sampling/sg_power_metrics.h"

namespace pallimo::sampling::testing {

using Request = fakes::FakeSamplingGate::Request;

/// A reader whose documents are values that the test wrote down; their bytes are a number.
class DocumentReader final : public ports::PropertyListReader {
 public:
  base::Bytes add(base::PropertyList document) {
    documents_.push_back(std::move(document));
    return {static_cast<std::uint8_t>(documents_.size() - 1)};
  }

  std::optional<base::PropertyList> readOnly(std::span<const std::uint8_t> bytes,
                                             const ports::Wanted& /*wanted*/) const override {
    if (bytes.size() != 1 || bytes[0] >= documents_.size()) return std::nullopt;
    return documents_[bytes[0]];
  }

 private:
  std::vector<base::PropertyList> documents_;
};

/// A module or a log that writes its name into a list when the engine comes by.
class Step final : public SampleConsumer, public RowLog {
 public:
  Step(std::string name, std::vector<std::string>& steps) : name_(std::move(name)), steps_(steps) {}

  void ingestSample() override { steps_.push_back(name_); }
  void appendRow() override { steps_.push_back(name_); }

 private:
  const std::string name_;
  std::vector<std::string>& steps_;
};

/// An engine with everything around it. The gate is open; nothing has run on the main queue yet.
struct EngineFixture {
  fakes::ManualMainQueue mainQueue;
  base::NotificationCentre notifications;
  fakes::MemoryUserDefaults defaults;
  DocumentReader reader;
  std::shared_ptr<fakes::FakeSamplingGate> gate = std::make_shared<fakes::FakeSamplingGate>();

  std::vector<std::string> steps;
  std::shared_ptr<Step> power = std::make_shared<Step>("power", steps);
  std::shared_ptr<Step> utilization = std::make_shared<Step>("utilization", steps);
  std::shared_ptr<Step> frequency = std::make_shared<Step>("frequency", steps);
  std::shared_ptr<Step> temperature = std::make_shared<Step>("temperature", steps);
  std::shared_ptr<Step> log = std::make_shared<Step>("log", steps);

  int clearDataNotices = 0;
  base::Subscription clearData = notifications.observe("ClearData", [this] { ++clearDataNotices; });
  base::Subscription updateView =
      notifications.observe("UpdateView", [this] { steps.push_back("UpdateView"); });

  std::shared_ptr<SGPowerMetrics> engine;

  /// After this, settings that were stored before are those that the engine begins with.
  SGPowerMetrics& create() {
    engine = SGPowerMetrics::create({mainQueue, notifications, defaults, reader});
    engine->setGate(gate);
    engine->setFanout({power, utilization, frequency, temperature, log});
    return *engine;
  }

  /// Creates the engine and lets it sample: the first request is out.
  SGPowerMetrics& start() {
    create();
    engine->setAuthorized(true);
    mainQueue.run();
    return *engine;
  }

  /// A document with nothing but a CPU energy.
  base::Bytes documentWithCPUEnergy(double millijoules) {
    base::PropertyListDictionary processor;
    processor.emplace_back("cpu_energy", base::PropertyList(millijoules));
    base::PropertyListDictionary document;
    document.emplace_back("processor", base::PropertyList(std::move(processor)));
    return reader.add(base::PropertyList(std::move(document)));
  }
};

}  // namespace pallimo::sampling::testing
