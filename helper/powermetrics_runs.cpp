// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/powermetrics_runs.h"

#include <cmath>
#include <string>
#include <system_error>
#include <utility>

#include "helper/document.h"

namespace pallimo::helper {

namespace {

using End = ports::ChildOutcome::End;

/// Why a run gave no document; empty when it gave one.
std::string complaintAbout(const ports::ChildOutcome& outcome, bool isEmpty) {
  switch (outcome.end) {
    case End::exited:
      if (outcome.code != 0) return "ended with status " + std::to_string(outcome.code);
      return isEmpty ? "printed nothing" : "";
    case End::signalled:
      return "was ended by signal " + std::to_string(outcome.code);
    case End::timedOut:
      return "took too long and was ended";
    case End::tooMuchOutput:
      return "printed more than " + std::to_string(kLongestDocument) + " bytes and was ended";
    case End::notStarted:
      return "could not be started: " + std::generic_category().message(outcome.code);
  }
  return "ended in an unknown way";
}

}  // namespace

class PowermetricsRuns::Run final : public PowermetricsRun {
 public:
  Run(std::shared_ptr<Usage> usage, ports::SystemLog& log, std::function<void()> finished)
      : usage_(std::move(usage)), log_(log), finished_(std::move(finished)) {
    ++usage_->runs;
  }
  ~Run() override {
    if (!isFinished_) --usage_->runs;
    takeDocument();
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  void start(ports::ChildProcesses& children, const ports::ChildCommand& command) {
    child_ = children.start(command,
                            [this](ports::ChildOutcome outcome) { didFinish(std::move(outcome)); });
  }

  bool isFinished() const override { return isFinished_; }

  std::optional<base::Bytes> takeDocument() override {
    if (document_) usage_->waitingBytes -= document_->size();
    return std::exchange(document_, std::nullopt);
  }

 private:
  void didFinish(ports::ChildOutcome outcome) {
    auto document = trimDocument(std::move(outcome.output));
    const auto complaint = complaintAbout(outcome, document.empty());
    if (complaint.empty()) {
      document_ = std::move(document);
      usage_->waitingBytes += document_->size();
    } else {
      log_.write("powermetrics " + complaint);
    }
    --usage_->runs;
    isFinished_ = true;
    const auto finished = std::exchange(finished_, nullptr);
    finished();
  }

  const std::shared_ptr<Usage> usage_;
  ports::SystemLog& log_;
  std::function<void()> finished_;
  bool isFinished_ = false;
  std::optional<base::Bytes> document_;
  std::unique_ptr<ports::ChildProcess> child_;
};

PowermetricsRuns::PowermetricsRuns(Services services, PowermetricsTool tool)
    : services_(services),
      tool_(std::move(tool)),
      usage_(std::make_shared<Usage>()),
      refusals_(services.log) {}

std::unique_ptr<PowermetricsRun> PowermetricsRuns::start(double msSampling, bool includeGPU,
                                                         std::uint64_t request,
                                                         std::function<void()> finished) {
  const auto command = powermetricsCommand(tool_, msSampling, includeGPU, request);
  if (!command) return refuse(Refusal::badPeriod);
  if (usage_->runs >= kMostRuns) return refuse(Refusal::tooManyRuns);
  if (usage_->waitingBytes > kMostWaitingBytes) return refuse(Refusal::tooManyWaitingDocuments);
  refusals_.endSeries();
  auto run = std::make_unique<Run>(usage_, services_.log, std::move(finished));
  run->start(services_.children, *command);
  return run;
}

std::unique_ptr<PowermetricsRun> PowermetricsRuns::refuse(Refusal refusal) {
  refusals_.add(refusal);
  return nullptr;
}

}  // namespace pallimo::helper
