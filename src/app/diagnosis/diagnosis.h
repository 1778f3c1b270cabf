// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/diagnosis/helper_inquiry.h"
#include "app/diagnosis/report_text.h"
#include "app/diagnosis/timed_sample.h"
#include "app/start/platform.h"
#include "app/start/run_end.h"
#include "ports/standard_output.h"

namespace pallimo::app {

/// `--diagnose`: one report of what Pallimo finds on this machine, to paste into a bug report.
///
/// Nothing is installed, no setting is written, nobody is told. Whatever is missing or does not
/// answer is named in the report, which comes with status 0. Every wait has a limit but one: the
/// system profiler is waited for as the window waits for it. It is made without the app's general
/// model, so that nothing of the app starts.
///
/// Main thread. The platform and the output outlive it; it outlives the delivery thread's work.
class Diagnosis final : public std::enable_shared_from_this<Diagnosis> {
 public:
  struct Settings {
    std::string version;                    ///< the app's
    std::vector<std::string> privateWords;  ///< must not stand in the report
    double speed = 1;                       ///< of the main queue's delays
  };

  /// The longest sample that is asked for, ms: with a longer period the report would come late.
  static constexpr double kLongestSample = 1000;
  /// How many of the document's keys are listed.
  static constexpr std::size_t kMostKeys = 200;

  /// `onEnd` is called once, from the main queue and never from within start().
  static std::shared_ptr<Diagnosis> create(const Platform& platform, ports::StandardOutput& output,
                                           const Settings& settings,
                                           std::function<void(RunEnd)> onEnd);

  /// Reads machine and sensors at once, then asks the helper. Once.
  void start();
  /// The user would not wait: the report is written as far as it goes, once start() has read the
  /// machine. Any thread.
  void interrupt();

 private:
  /// What the delivery thread makes of the document. Written there before the main thread learns of
  /// the sample, and read by it afterwards.
  struct Sample {
    base::Bytes document;
    std::vector<TimedSample::Stage> stages;
  };

  Diagnosis(const Platform& platform, ports::StandardOutput& output, const Settings& settings,
            std::function<void(RunEnd)> onEnd);

  void askHelper();
  void writeSettings();
  void writeHelper(const HelperInquiry::Findings& findings);
  void writeDocument();
  void writeClusters(const base::PropertyList& document);
  void writeTiming(const HelperInquiry::Findings& findings);
  void finish(const std::optional<HelperInquiry::Findings>& findings);

  const Platform& platform_;
  ports::StandardOutput& output_;
  const double speed_;
  std::function<void(RunEnd)> onEnd_;
  ReportText report_;
  /// Nothing where the temperatures can't be asked for.
  std::unique_ptr<TimedSample> timedSample_;
  const std::shared_ptr<Sample> sample_ = std::make_shared<Sample>();
  std::shared_ptr<HelperInquiry> inquiry_;
};

}  // namespace pallimo::app
