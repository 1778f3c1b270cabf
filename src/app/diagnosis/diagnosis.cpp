// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/diagnosis.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "app/diagnosis/document_outline.h"
#include "app/diagnosis/machine_report.h"
#include "base/text_format.h"
#include "helper_link/embedded_helper_version.h"
#include "ports/settings_keys.h"
#include "sampling/sample_parser.h"

namespace pallimo::app {

namespace {

constexpr double kDefaultPeriod = 500;

std::string milliseconds(TimedSample::Duration duration) {
  const std::chrono::duration<double, std::milli> value = duration;
  return base::formatFixed(value.count(), 3) + " ms";
}

std::string describe(const OutlineEntry& entry) {
  std::string text = entry.kind;
  if (entry.count > 1) text += ", " + std::to_string(entry.count) + " times";
  const std::string size = sizeText(entry);
  return size.empty() ? text : text + ", " + size;
}

std::string describe(const sampling::Cluster& cluster) {
  std::string text =
      cluster.frequency ? base::formatFixed(*cluster.frequency, 0) + " MHz" : "no frequency";
  text += cluster.cpus.empty() ? ", no CPUs" : ", CPUs";
  for (const std::int64_t cpu : cluster.cpus) text += " " + std::to_string(cpu);
  return text;
}

bool isBinary(const base::Bytes& document) {
  constexpr std::string_view kMark = "bplist";
  return document.size() >= kMark.size() &&
         std::equal(kMark.begin(), kMark.end(), document.begin());
}

}  // namespace

std::shared_ptr<Diagnosis> Diagnosis::create(const Platform& platform,
                                             ports::StandardOutput& output,
                                             const Settings& settings,
                                             std::function<void(RunEnd)> onEnd) {
  return std::shared_ptr<Diagnosis>(new Diagnosis(platform, output, settings, std::move(onEnd)));
}

Diagnosis::Diagnosis(const Platform& platform, ports::StandardOutput& output,
                     const Settings& settings, std::function<void(RunEnd)> onEnd)
    : platform_(platform),
      output_(output),
      speed_(settings.speed),
      onEnd_(std::move(onEnd)),
      report_(privacy::PrivateTexts(settings.privateWords)) {
  report_.title("Pallimo " + settings.version + ", diagnosis");
}

void Diagnosis::start() {
  const MachineReport machine(platform_);
  machine.write(report_);
  if (machine.hasTemperatures()) timedSample_ = std::make_unique<TimedSample>(platform_);
  writeSettings();
  if (machine.isAppleSilicon()) return askHelper();
  platform_.mainQueue.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->finish(std::nullopt);
  });
}

void Diagnosis::interrupt() {
  platform_.mainQueue.async([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (self && self->inquiry_) self->inquiry_->stop();
  });
}

void Diagnosis::askHelper() {
  HelperInquiry::Question question;
  question.expectedVersion = helper_link::embeddedHelperVersion(platform_.bundle);
  question.msSampling =
      timedSample_ ? std::min(timedSample_->msSampling(), kLongestSample) : kDefaultPeriod;
  question.includeGPU = timedSample_ && timedSample_->includeGPU();
  question.speed = speed_;
  const auto onDocument = [sample = sample_,
                           timed = timedSample_.get()](const base::Bytes& document) {
    sample->document = document;
    if (timed != nullptr) sample->stages = timed->take(document);
  };
  inquiry_ = HelperInquiry::create(
      {platform_.mainQueue, platform_.helperConnector, platform_.clock}, question, onDocument,
      [weak = weak_from_this()](const HelperInquiry::Findings& findings) {
        if (const auto self = weak.lock()) self->finish(findings);
      });
  inquiry_->start();
}

void Diagnosis::writeSettings() {
  report_.section("Settings");
  report_.line("sampling period", timedSample_
                                      ? base::formatFixed(timedSample_->msSampling(), 0) + " ms"
                                      : "not read");
  const bool isMeasured = platform_.defaults.boolForKey(ports::settings_key::kGpuFrequency);
  report_.line("GPU frequency", isMeasured ? "measured" : "not measured");
}

void Diagnosis::writeHelper(const HelperInquiry::Findings& findings) {
  report_.line("state", textOf(findings.state));
  report_.foreignLine("version", findings.version.value_or("not told"));
  report_.foreignLine("embedded version",
                      helper_link::embeddedHelperVersion(platform_.bundle).value_or("none"));
}

void Diagnosis::writeDocument() {
  const base::Bytes& bytes = sample_->document;
  report_.line("size",
               std::to_string(bytes.size()) + " bytes, " + (isBinary(bytes) ? "binary" : "text"));
  const std::optional<base::PropertyList> document = platform_.propertyLists.read(bytes);
  if (!document) return report_.line("keys", "can't be read as a property list");
  const std::vector<OutlineEntry> outline = outlineOf(*document);
  report_.line("keys", std::to_string(outline.size()));
  const std::size_t listed = std::min(outline.size(), kMostKeys);
  for (std::size_t i = 0; i < listed; ++i) {
    report_.foreignName(outline[i].path, describe(outline[i]));
  }
  if (listed < outline.size()) {
    report_.line("...", std::to_string(outline.size() - listed) + " more");
  }
  writeClusters(*document);
}

void Diagnosis::writeClusters(const base::PropertyList& document) {
  report_.section("Clusters");
  const std::vector<sampling::Cluster> clusters = sampling::allClusters(document);
  if (clusters.empty()) report_.line("none", "");
  for (const sampling::Cluster& cluster : clusters) {
    report_.foreignName(cluster.name.value_or("(no name)"), describe(cluster));
  }
}

void Diagnosis::writeTiming(const HelperInquiry::Findings& findings) {
  report_.section("Timing of one sample");
  report_.line("request to result",
               milliseconds(findings.answerTime.value_or(TimedSample::Duration::zero())));
  TimedSample::Duration sum{};
  for (const TimedSample::Stage& stage : sample_->stages) {
    report_.line(stage.name, milliseconds(stage.duration));
    sum += stage.duration;
  }
  report_.line("from result to row", sample_->stages.empty() ? "not measured" : milliseconds(sum));
}

void Diagnosis::finish(const std::optional<HelperInquiry::Findings>& findings) {
  report_.section("Helper");
  if (findings) {
    writeHelper(*findings);
  } else {
    report_.line("state", "not asked on this processor");
  }
  report_.section("Document");
  if (findings && findings->state == HelperInquiry::State::serves) {
    writeDocument();
    writeTiming(*findings);
  } else {
    report_.line("none", "");
  }
  const bool isWritten = output_.write(report_.text()) != ports::StandardOutput::State::failed;
  const auto onEnd = std::exchange(onEnd_, nullptr);
  if (!onEnd) return;
  if (isWritten) return onEnd({});
  onEnd({run_status::kOutputFailed, std::string(run_message::kOutputFailed) + output_.failure()});
}

}  // namespace pallimo::app
