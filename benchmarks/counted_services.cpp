// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What the program does for others: the text of a scrape, and the helper's answer to a request,
// without the processes around it.

#include <prometheus/text_serializer.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "adapters/prometheus/library_families.h"
#include "benchmarks/counted_work.h"
#include "benchmarks/example_row.h"
#include "fakes/fake_sampling_gate.h"
#include "fakes/manual_main_queue.h"
#include "fakes/recording_lines.h"
#include "helper/client_session.h"
#include "serving/current_metrics.h"

namespace pallimo::benchmarks {

namespace {

void countScrape() {
  serving::CurrentMetrics metrics("1.0");
  const auto gate = std::make_shared<fakes::FakeSamplingGate>();
  metrics.setMachine({"Mac14,9", "Apple M2 Pro", "Apple M2 Pro", 4, 8, 19}, gate);
  const serving::MeasuredFigures all{true, true, true, true, true, true, true, true, true, true};
  metrics.take({exampleRow(500), all, 500});
  const ::prometheus::TextSerializer serializer;
  count({"scrape"},
        [&] { serializer.Serialize(adapters::prometheus::libraryFamilies(metrics.families())); });
}

/// Programs that print what they are told to, one at a time.
class PrintingChildren final : public ports::ChildProcesses {
 public:
  std::unique_ptr<ports::ChildProcess> start(
      const ports::ChildCommand&, std::function<void(ports::ChildOutcome)> finished) override {
    finished_ = std::move(finished);
    return std::make_unique<ports::ChildProcess>();
  }
  void print(base::Bytes output) {
    std::exchange(finished_, nullptr)({ports::ChildOutcome::End::exited, 0, std::move(output)});
  }

 private:
  std::function<void(ports::ChildOutcome)> finished_;
};

class KeepingPeer final : public ports::HelperPeer {
 public:
  void powermetricsResult(std::optional<base::Bytes> document) override {
    latest_ = std::move(document);
  }
  void close() override {}

 private:
  std::optional<base::Bytes> latest_;
};

void countAnswer() {
  constexpr std::size_t kDocument = 55'000;
  fakes::ManualMainQueue mainQueue;
  fakes::RecordingSystemLog log;
  PrintingChildren children;
  helper::PowermetricsRuns runs({children, log}, {"/usr/bin/powermetrics", true, nullptr});
  const auto session = std::make_shared<helper::ClientSession>(
      helper::ClientSession::Services{mainQueue, runs, {}}, "1.0", std::make_shared<KeepingPeer>());
  base::Bytes printed;
  count(
      {"helper_answer"}, [&] { printed = base::Bytes(kDocument, ' '); },
      [&] {
        session->requestPowermetrics(500, true);
        children.print(std::move(printed));
      });
}

}  // namespace

void countServices() {
  countScrape();
  countAnswer();
}

}  // namespace pallimo::benchmarks
