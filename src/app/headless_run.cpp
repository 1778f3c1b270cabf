// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/headless_run.h"

#include <cmath>
#include <optional>
#include <utility>

namespace pallimo::app {

namespace {

using namespace std::chrono_literals;

constexpr int kDone = 0;
constexpr int kOutputFailed = 1;
constexpr int kNotUsable = 3;
constexpr int kOutOfDate = 4;
constexpr int kRefused = 5;
constexpr int kLost = 6;

}  // namespace

HeadlessRun::HeadlessRun(const Services& services, const Settings& settings,
                         std::function<void(RunEnd)> onEnd)
    : services_(services),
      settings_(settings),
      mainThread_(std::this_thread::get_id()),
      onEnd_(std::move(onEnd)),
      format_(makeHeadlessFormat(settings.format)) {}

std::shared_ptr<HeadlessRun> HeadlessRun::create(const Services& services, const Settings& settings,
                                                 std::function<void(RunEnd)> onEnd) {
  return std::shared_ptr<HeadlessRun>(new HeadlessRun(services, settings, std::move(onEnd)));
}

void HeadlessRun::start() {
  receiveRows();
  if (settings_.installHelper) noticeRefusals();
  watchContent();
  services_.mainQueue.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->contentChanged();
  });
  if (settings_.installHelper) {
    startPressing();
  } else {
    later(nominal(kWaitingLimit),
          [](HeadlessRun& run) { run.endUnlessLive(run_message::kNotUsable); });
  }
}

void HeadlessRun::interrupt() {
  services_.mainQueue.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->end(kDone);
  });
}

void HeadlessRun::later(std::chrono::milliseconds delay, std::function<void(HeadlessRun&)> task) {
  services_.mainQueue.after(delay, [weak = weak_from_this(), task = std::move(task)] {
    if (const auto self = weak.lock()) task(*self);
  });
}

/// The main queue's delays pass `speed` times faster, so a real delay is so much longer there.
std::chrono::milliseconds HeadlessRun::nominal(std::chrono::seconds real) const {
  const std::chrono::duration<double, std::milli> milliseconds = real;
  return std::chrono::milliseconds(std::llround(milliseconds.count() * settings_.speed));
}

void HeadlessRun::receiveRows() {
  ports::MainQueue& mainQueue = services_.mainQueue;
  services_.general.sampleRows()->addReceiver(
      [&mainQueue, weak = weak_from_this()](const logging::LogRow& row) {
        mainQueue.async([weak, row] {
          if (const auto self = weak.lock()) self->print(row);
        });
      });
}

/// A refused installation is announced on the main thread, which alone installs; the same notice
/// from another thread is an interruption. The run ends when the installation has had its say.
void HeadlessRun::noticeRefusals() {
  ports::MainQueue& mainQueue = services_.mainQueue;
  const auto refused = [&mainQueue, main = mainThread_, weak = weak_from_this()] {
    if (std::this_thread::get_id() != main) return;
    mainQueue.async([weak] {
      if (const auto self = weak.lock()) self->end(kRefused, run_message::kRefused);
    });
  };
  installError_ = services_.notifications.observe(base::notification::kXPCInstallError, refused);
}

void HeadlessRun::watchContent() {
  contentView_ = std::make_unique<ContentView>(services_.mainQueue, services_.general);
  contentChange_ = contentView_->contentModel()->observe([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->contentChanged();
  });
}

void HeadlessRun::startPressing() {
  if (hasEnded_) return;
  pressTimer_ = services_.mainQueue.every(nominal(kPressInterval), [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->pressIfShown();
  });
}

void HeadlessRun::print(const logging::LogRow& row) {
  if (hasEnded_) return;
  switch (services_.output.write(format_->format(row))) {
    case SampleOutput::State::open:
      break;
    case SampleOutput::State::closed:
      return end(kDone);
    case SampleOutput::State::failed:
      return end(kOutputFailed,
                 std::string(run_message::kOutputFailed) + services_.output.failure());
  }
  ++printed_;
  if (settings_.samples == printed_) end(kDone);
}

void HeadlessRun::contentChanged() {
  const MainContent shown = contentView_->content();
  const bool wasLive = std::exchange(isLive_, shown == MainContent::live);
  if (shown == MainContent::refusal) return end(kNotUsable, run_message::kWrongProcessor);
  if (isLive_) isWaitingForAnswer_ = false;
  if (isLive_ || settings_.installHelper) return;
  if (wasLive) return end(kLost, run_message::kLost);
  if (shown == MainContent::update) end(kOutOfDate, run_message::kOutOfDate);
}

void HeadlessRun::pressIfShown() {
  if (hasEnded_) return;
  const std::optional<MainContent> pressed = contentView_->press();
  if (pressed == MainContent::update) {
    pauseForUpdate();
    waitForAnswer(helper_link::XPCManager::kInstallationDelay);
  } else if (pressed && !isWaitingForAnswer_) {
    waitForAnswer(0ms);
  }
}

void HeadlessRun::pauseForUpdate() {
  pressTimer_.reset();
  later(helper_link::XPCManager::kInstallationDelay, [](HeadlessRun& run) { run.startPressing(); });
}

void HeadlessRun::waitForAnswer(std::chrono::milliseconds untilInstallation) {
  isWaitingForAnswer_ = true;
  const std::uint64_t wait = ++waits_;
  later(untilInstallation + nominal(kWaitingLimit), [wait](HeadlessRun& run) {
    if (!run.isWaitingForAnswer_ || run.waits_ != wait) return;
    run.endUnlessLive(run_message::kStillNotUsable);
  });
}

void HeadlessRun::endUnlessLive(std::string_view message) {
  contentChanged();
  if (!isLive_) end(kNotUsable, message);
}

void HeadlessRun::end(int status, std::string_view message) {
  if (std::exchange(hasEnded_, true)) return;
  pressTimer_.reset();
  contentChange_.cancel();
  installError_.cancel();
  if (const auto onEnd = std::exchange(onEnd_, nullptr)) onEnd({status, std::string(message)});
}

}  // namespace pallimo::app
