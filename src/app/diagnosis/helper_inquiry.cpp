// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/helper_inquiry.h"

#include <cmath>
#include <utility>

#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::app {

namespace protocol = helper_link::protocol;

/// Takes the result on the delivery thread.
class HelperInquiry::Receiver final : public protocol::ClientProtocol {
 public:
  Receiver(const Services& services, OnDocument onDocument, std::weak_ptr<HelperInquiry> inquiry)
      : services_(services), onDocument_(std::move(onDocument)), inquiry_(std::move(inquiry)) {}

  void powermetricsResult(std::optional<base::Bytes> document) override {
    if (std::exchange(hasResult_, true)) return;
    const auto when = services_.clock.now();
    if (document && onDocument_) onDocument_(*document);
    services_.mainQueue.async([weak = inquiry_, when, hasDocument = document.has_value()] {
      if (const auto inquiry = weak.lock()) inquiry->sampleCame(hasDocument, when);
    });
  }

 private:
  const Services services_;
  const OnDocument onDocument_;
  const std::weak_ptr<HelperInquiry> inquiry_;
  bool hasResult_ = false;  // one was asked for; whoever sends more is not heard
};

std::shared_ptr<HelperInquiry> HelperInquiry::create(const Services& services,
                                                     const Question& question,
                                                     OnDocument onDocument, OnEnd onEnd) {
  return std::shared_ptr<HelperInquiry>(
      new HelperInquiry(services, question, std::move(onDocument), std::move(onEnd)));
}

HelperInquiry::HelperInquiry(const Services& services, const Question& question,
                             OnDocument onDocument, OnEnd onEnd)
    : services_(services),
      question_(question),
      onDocument_(std::move(onDocument)),
      onEnd_(std::move(onEnd)) {}

/// The task as a handler that any thread may call with what the task takes.
template <typename Task>
auto HelperInquiry::onMain(Task task) {
  return [&mainQueue = services_.mainQueue, weak = weak_from_this(), task](auto... told) {
    mainQueue.async([weak, task, told...] {
      if (const auto self = weak.lock()) task(*self, told...);
    });
  };
}

void HelperInquiry::start() {
  connection_ =
      services_.connector.connect(protocol::kMachServiceName, protocol::kConnectionPrivileged);
  const auto isAbsent = onMain([](HelperInquiry& self) { self.end(State::absent); });
  if (!connection_) return isAbsent();
  connection_->setExportedObject(
      std::make_shared<Receiver>(services_, onDocument_, weak_from_this()));
  connection_->setInvalidationHandler(isAbsent);
  connection_->setInterruptionHandler(onMain([](HelperInquiry& self) { self.end(State::lost); }));
  connection_->resume();
  const auto helper = connection_->remoteObjectProxy();
  if (!helper) return isAbsent();
  helper->isResponding(
      onMain([](HelperInquiry& self, bool isResponding) { self.respondingTold(isResponding); }));
  helper->getVersion(
      onMain([](HelperInquiry& self, const std::string& version) { self.versionTold(version); }));
  limit(nominal(kLimit), State::silent);
}

/// When the time is over the inquiry ends so, unless it went on meanwhile.
void HelperInquiry::limit(std::chrono::milliseconds delay, State state) {
  services_.mainQueue.after(delay, [weak = weak_from_this(), state] {
    const auto self = weak.lock();
    if (self && self->requested_.has_value() == (state == State::givesNoSample)) self->end(state);
  });
}

void HelperInquiry::respondingTold(bool isResponding) {
  isResponding_ = isResponding;
  decide();
}

void HelperInquiry::versionTold(const std::string& version) {
  findings_.version = version;
  decide();
}

void HelperInquiry::decide() {
  // A helper may answer twice: it is asked for one sample all the same.
  if (!onEnd_ || requested_ || !isResponding_ || !findings_.version) return;
  if (!*isResponding_) return end(State::answersNo);
  if (findings_.version != question_.expectedVersion) return end(State::outOfDate);
  requestSample();
}

void HelperInquiry::requestSample() {
  const auto helper = connection_->remoteObjectProxy();
  if (!helper) return end(State::lost);
  requested_ = services_.clock.now();
  helper->requestPowermetrics(question_.msSampling, question_.includeGPU);
  const std::chrono::duration<double, std::milli> period(question_.msSampling);
  limit(nominal(kLimit) + std::chrono::ceil<std::chrono::milliseconds>(period),
        State::givesNoSample);
}

void HelperInquiry::sampleCame(bool hasDocument, std::chrono::system_clock::time_point when) {
  if (!onEnd_) return;
  if (requested_) findings_.answerTime = when - *requested_;
  end(hasDocument ? State::serves : State::givesNoDocument);
}

void HelperInquiry::end(State state) {
  const OnEnd onEnd = std::exchange(onEnd_, nullptr);
  if (!onEnd) return;
  if (connection_) {
    // Its own end is none of those that it waits for.
    connection_->setInvalidationHandler(nullptr);
    connection_->setInterruptionHandler(nullptr);
    connection_->invalidate();
  }
  findings_.state = state;
  onEnd(findings_);
}

std::chrono::milliseconds HelperInquiry::nominal(std::chrono::duration<double> real) const {
  return std::chrono::milliseconds(std::llround(real.count() * 1000 * question_.speed));
}

std::string_view textOf(HelperInquiry::State state) {
  switch (state) {
    case HelperInquiry::State::absent:
      return "absent: not installed, or it can't be started";
    case HelperInquiry::State::silent:
      return "silent: no answer within 5 seconds";
    case HelperInquiry::State::answersNo:
      return "answers NO";
    case HelperInquiry::State::outOfDate:
      return "out of date: its version is not the embedded one's";
    case HelperInquiry::State::lost:
      return "lost: it ended while it was asked";
    case HelperInquiry::State::givesNoSample:
      return "answers, but sends no sample within 5 seconds and the period";
    case HelperInquiry::State::givesNoDocument:
      return "answers, but powermetrics gave no document";
    case HelperInquiry::State::notWaitedFor:
      return "not waited for: interrupted";
    case HelperInquiry::State::serves:
      break;
  }
  return "serves";
}

}  // namespace pallimo::app
