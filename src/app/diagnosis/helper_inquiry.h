// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/bytes.h"
#include "ports/clock.h"
#include "ports/helper_connection.h"
#include "ports/main_queue.h"

namespace pallimo::app {

/// Asks the helper what it is, once, for a report: whether it responds, its version and, where the
/// app would use it, one sample. Sends nothing else, so that nothing of the helper's is changed and
/// another app that uses it goes on undisturbed; a helper that was started by the question ends by
/// itself. Has a connection of its own, which ends with the inquiry.
///
/// Main thread; the link's replies are queued to it. The services outlive it.
class HelperInquiry final : public std::enable_shared_from_this<HelperInquiry> {
 public:
  enum class State {
    absent,           ///< nobody serves the name
    silent,           ///< it did not answer both questions in time
    answersNo,        ///< it says that it is not there
    outOfDate,        ///< its version is not the embedded one's
    lost,             ///< it ended while it was asked
    givesNoSample,    ///< no result in time
    givesNoDocument,  ///< its run gave none
    serves,           ///< it sent a document
    notWaitedFor,     ///< the user would not wait
  };

  struct Findings {
    State state = State::absent;
    std::optional<std::string> version;  ///< what it says
    /// From the request to the result, by the clock; where one came.
    std::optional<std::chrono::system_clock::duration> answerTime;
  };

  struct Services {
    ports::MainQueue& mainQueue;
    ports::HelperConnector& connector;
    const ports::Clock& clock;
  };

  struct Question {
    std::optional<std::string> expectedVersion;  ///< the embedded helper's
    double msSampling = 500;
    bool includeGPU = false;
    /// How much faster than real time the main queue's delays pass.
    double speed = 1;
  };

  /// Called with the document on the delivery thread, before onEnd.
  using OnDocument = std::function<void(const base::Bytes&)>;
  /// Called once, on the main thread and never from within start().
  using OnEnd = std::function<void(const Findings&)>;

  /// How long it may take to answer the questions, and the sample longer than its period. Real
  /// time, as in a headless run: a real process does not answer faster in a faster run.
  static constexpr std::chrono::seconds kLimit{5};

  static std::shared_ptr<HelperInquiry> create(const Services& services, const Question& question,
                                               OnDocument onDocument, OnEnd onEnd);

  void start();
  /// The user would not wait.
  void stop() { end(State::notWaitedFor); }

 private:
  class Receiver;

  HelperInquiry(const Services& services, const Question& question, OnDocument onDocument,
                OnEnd onEnd);

  template <typename Task>
  auto onMain(Task task);
  void limit(std::chrono::milliseconds delay, State state);
  void respondingTold(bool isResponding);
  void versionTold(const std::string& version);
  void decide();
  void requestSample();
  void sampleCame(bool hasDocument, std::chrono::system_clock::time_point when);
  void end(State state);
  std::chrono::milliseconds nominal(std::chrono::duration<double> real) const;

  const Services services_;
  const Question question_;
  const OnDocument onDocument_;
  OnEnd onEnd_;
  std::shared_ptr<ports::HelperConnection> connection_;
  std::optional<bool> isResponding_;
  std::optional<std::chrono::system_clock::time_point> requested_;
  Findings findings_;
};

/// What a report says of the state.
std::string_view textOf(HelperInquiry::State state);

}  // namespace pallimo::app
