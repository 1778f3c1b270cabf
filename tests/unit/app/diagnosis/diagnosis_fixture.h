// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/diagnosis/diagnosis.h"
#include "fakes/fake_platform.h"
#include "fakes/recording_output.h"
#include "scenarios/sample_document.h"

namespace pallimo::app {

/// A diagnosis on fakes: a Mac14,9 whose helper is the test.
class DiagnosisTest : public testing::Test {
 protected:
  DiagnosisTest() { settings_.version = "0.1.0"; }
  ~DiagnosisTest() override { queue().run(); }

  fakes::ManualMainQueue& queue() { return fakes_.mainQueue; }
  fakes::FakeHelperConnection& helper() { return *fakes_.helperConnector.latest(); }

  void start() {
    platform_.emplace(fakes_.platform());
    diagnosis_ = Diagnosis::create(*platform_, output_, settings_,
                                   [this](RunEnd end) { ends_.push_back(end); });
    diagnosis_->start();
    EXPECT_TRUE(ends_.empty()) << "ended from within start()";
    queue().run();
  }
  void helperAnswers(const std::string& version = "1.0") {
    helper().replyIsResponding(true);
    helper().replyVersion(version);
    queue().run();
  }
  void helperSends(const std::string& document) {
    helper().sendResult(base::Bytes(document.begin(), document.end()));
    queue().run();
  }
  /// From the start to the report, with a helper that serves.
  void diagnose(const std::string& document = scenarios::xmlOf({})) {
    start();
    helperAnswers();
    helperSends(document);
  }

  /// The report once the run has ended with status 0.
  std::string report() const {
    if (ends_ != std::vector<RunEnd>{RunEnd{}}) return "no end, or another one";
    return output_.text;
  }
  /// The lines of one section without their indentation, each with its line end.
  std::string section(const std::string& name) const {
    const std::string text = report();
    const std::string title = "\n\n" + name + "\n";
    const std::size_t begin = text.find(title);
    if (begin == std::string::npos) return "no such section";
    std::string lines;
    std::size_t at = begin + title.size();
    while (text.compare(at, 2, "  ") == 0) {
      const std::size_t end = text.find('\n', at);
      lines += text.substr(at + 2, end - at - 1);
      at = end + 1;
    }
    return lines;
  }
  /// The messages that reached the helper.
  std::vector<std::string> messages() {
    std::vector<std::string> messages;
    for (const std::string& entry : fakes_.helperConnector.journal().take()) {
      if (entry.rfind("-> ", 0) == 0) messages.push_back(entry.substr(3));
    }
    return messages;
  }
  bool says(const std::string& text) const { return report().find(text) != std::string::npos; }

  fakes::FakePlatform fakes_;
  fakes::RecordingOutput output_;
  Diagnosis::Settings settings_;
  std::optional<Platform> platform_;
  std::shared_ptr<Diagnosis> diagnosis_;
  std::vector<RunEnd> ends_;
};

}  // namespace pallimo::app
