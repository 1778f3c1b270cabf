// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/headless/headless_run.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "ui/main_content.h"

namespace pallimo::app {

namespace {

// A busy helper's samples come once a second, but not to the millisecond.
constexpr int kLooksBeforeAsking = 2;

// The helper ends a run that takes so much longer than its sampling period.
constexpr double kLongestDelayOfARun = 30;

}  // namespace

HeadlessRun::HeadlessRun(const Services& services, const Settings& settings,
                         std::function<void(RunEnd)> onEnd)
    : services_(services),
      settings_(settings),
      onEnd_(std::move(onEnd)),
      format_(makeHeadlessFormat(settings.format)),
      isWaiting_(!settings.installHelper) {}

std::shared_ptr<HeadlessRun> HeadlessRun::create(const Services& services, const Settings& settings,
                                                 std::function<void(RunEnd)> onEnd) {
  return std::shared_ptr<HeadlessRun>(new HeadlessRun(services, settings, std::move(onEnd)));
}

void HeadlessRun::start() {
  receiveRows();
  if (settings_.installHelper) noticeLostAnswers();
  watchContent();
  services_.mainQueue.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->contentChanged();
  });
  lookLater();
}

void HeadlessRun::interrupt() {
  services_.mainQueue.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->userInterrupts();
  });
}

void HeadlessRun::later(std::chrono::milliseconds delay, std::function<void(HeadlessRun&)> task) {
  services_.mainQueue.after(delay, [weak = weak_from_this(), task = std::move(task)] {
    const auto self = weak.lock();
    if (self && !self->hasEnded_) task(*self);
  });
}

/// The main queue's delays pass `speed` times faster, so a real delay is so much longer there.
std::chrono::milliseconds HeadlessRun::nominal(std::chrono::seconds real) const {
  const std::chrono::duration<double, std::milli> milliseconds = real;
  return std::chrono::milliseconds(std::llround(milliseconds.count() * settings_.speed));
}

void HeadlessRun::receiveRows() {
  ports::MainQueue& mainQueue = services_.mainQueue;
  const std::weak_ptr<const sampling::SGPowerMetrics> engine =
      services_.general.modelPowerMetrics();
  const bool takesClusters = printsClusters(settings_.format);
  services_.general.sampleRows()->addReceiver(
      [&mainQueue, engine, takesClusters, weak = weak_from_this()](const logging::LogRow& row) {
        HeadlessSample sample = {row};
        // Now: when the line is printed the next document may have come.
        if (const auto source = takesClusters ? engine.lock() : nullptr) {
          sample.clusters = source->getClusters();
        }
        mainQueue.async([weak, sample = std::move(sample)] {
          if (const auto self = weak.lock()) self->print(sample);
        });
      });
}

/// The notice does not say which connection was interrupted: that of an old helper, which the
/// installation ends, takes no answer with it.
void HeadlessRun::noticeLostAnswers() {
  ports::MainQueue& mainQueue = services_.mainQueue;
  const auto interrupted = [&mainQueue, weak = weak_from_this()] {
    mainQueue.async([weak] {
      const auto self = weak.lock();
      if (!self || !self->isWaiting_) return;
      if (!self->services_.general.xpcmanager()->client().isProbeOpen()) self->isAnswerLost_ = true;
    });
  };
  lostAnswers_ = services_.notifications.observe(base::notification::kXPCInstallError, interrupted);
}

void HeadlessRun::watchContent() {
  contentView_ = std::make_unique<ContentView>(services_.mainQueue, services_.general);
  contentChange_ = contentView_->contentModel()->observe([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->contentChanged();
  });
}

void HeadlessRun::print(const HeadlessSample& sample) {
  if (hasEnded_) return;
  silentLooks_ = 0;
  beginWatch();
  switch (services_.output.write(format_->format(sample))) {
    case ports::StandardOutput::State::open:
      break;
    case ports::StandardOutput::State::closed:
      return end(run_status::kDone);
    case ports::StandardOutput::State::failed:
      return end(run_status::kOutputFailed,
                 std::string(run_message::kOutputFailed) + services_.output.failure());
  }
  ++printed_;
  if (settings_.samples == printed_) end(run_status::kDone);
}

void HeadlessRun::contentChanged() {
  const ui::MainContent shown = contentView_->content();
  const bool wasLive = std::exchange(isLive_, shown == ui::MainContent::live);
  if (shown == ui::MainContent::refusal) {
    return end(run_status::kNotUsable, run_message::kWrongProcessor);
  }
  if (isLive_) isWaiting_ = false;
  if (isLive_ && !wasLive) {
    silentLooks_ = 0;
    beginWatch();
  }
  if (isLive_ || settings_.installHelper) return;
  if (wasLive) return end(run_status::kLost, run_message::kLost);
  if (shown == ui::MainContent::update) end(run_status::kOutOfDate, run_message::kOutOfDate);
}

void HeadlessRun::lookLater() {
  later(nominal(kLookInterval), [](HeadlessRun& run) { run.look(); });
}

void HeadlessRun::look() {
  contentChanged();
  if (!hasEnded_) act();
  if (!hasEnded_ && !isUpdating_) lookLater();
}

void HeadlessRun::act() {
  if (isLive_) return watchForSilence();
  if (isWaiting_) waitForHelper();
  if (!hasEnded_ && (!isWaiting_ || isAnswerLost_)) press();
}

void HeadlessRun::watchForSilence() {
  // The last sign of life came between two looks: the fifth look may be four seconds away from it.
  if (++silentLooks_ > kWaitingLimit) return end(run_status::kNotUsable, run_message::kSilent);
  if (silentLooks_ >= kLooksBeforeAsking) askForSignOfLife();
  watchForSamples();
}

void HeadlessRun::beginWatch() {
  emptyLooks_ = looksForSample_ = 0;
  longestPeriod_ = 0;
  emptyResults_ = services_.general.modelPowerMetrics()->emptyResults();
}

void HeadlessRun::watchForSamples() {
  const sampling::SGPowerMetrics& engine = *services_.general.modelPowerMetrics();
  const std::uint64_t known = std::exchange(emptyResults_, engine.emptyResults());
  if (emptyResults_ != known) ++emptyLooks_;
  longestPeriod_ = std::max(longestPeriod_, engine.msSampling());
  const double patience = longestPeriod_ / 1000 + kLongestDelayOfARun + kWaitingLimit;
  if (emptyLooks_ < kWaitingLimit && ++looksForSample_ <= patience) return;
  end(run_status::kNoSamples, run_message::kNoSamples);
}

void HeadlessRun::askForSignOfLife() {
  ports::MainQueue& mainQueue = services_.mainQueue;
  const auto answered = [&mainQueue, weak = weak_from_this()](bool isResponding) {
    if (!isResponding) return;
    mainQueue.async([weak] {
      const auto self = weak.lock();
      if (self && self->isLive_) self->silentLooks_ = 0;
    });
  };
  services_.general.xpcmanager()->client().askIsResponding(answered);
}

void HeadlessRun::waitForHelper() {
  if (++silentLooks_ < kWaitingLimit) return;
  end(run_status::kNotUsable,
      settings_.installHelper ? run_message::kStillNotUsable : run_message::kNotUsable);
}

void HeadlessRun::press() {
  if (contentView_->press() != ui::MainContent::update) return installationRan();
  isUpdating_ = true;
  // Queued after the manager's own task of the same delay, so that it runs after that one.
  later(helper_link::XPCManager::kInstallationDelay, [](HeadlessRun& run) { run.updateRan(); });
}

void HeadlessRun::installationRan() {
  if (services_.general.xpcmanager()->isInstallationRefused()) {
    return end(run_status::kRefused, run_message::kRefused);
  }
  if (!std::exchange(isWaiting_, true)) silentLooks_ = 0;
  isAnswerLost_ = false;
}

void HeadlessRun::updateRan() {
  isUpdating_ = false;
  if (isInterrupted_) return end(run_status::kDone);
  installationRan();
  if (!hasEnded_) lookLater();
}

void HeadlessRun::userInterrupts() {
  if (isUpdating_ && !std::exchange(isInterrupted_, true)) return;
  end(run_status::kDone);
}

void HeadlessRun::end(int status, std::string_view message) {
  if (std::exchange(hasEnded_, true)) return;
  contentChange_.cancel();
  lostAnswers_.cancel();
  if (const auto onEnd = std::exchange(onEnd_, nullptr)) onEnd({status, std::string(message)});
}

}  // namespace pallimo::app
