// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// One sample on its way: libplist's parse of its document as the yardstick, the road from the
// document's bytes to a line of the log, and the panels that are made of the models.

#include <plist/plist.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "benchmarks/counted_work.h"
#include "benchmarks/example_document.h"
#include "benchmarks/sample_road.h"
#include "fakes/scripted_random_numbers.h"
#include "modules/metric_history.h"
#include "ui/display_settings.h"
#include "ui/panel.h"

namespace pallimo::benchmarks {

namespace {

void parseAndFree(const base::Bytes& bytes) {
  plist_t root = nullptr;
  plist_from_xml(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::uint32_t>(bytes.size()), &root);
  plist_free(root);
}

std::vector<ui::Panel> panelsOf(const logging::SampleRows::Models& models,
                                ports::RandomNumbers& random) {
  const ui::DisplaySettings settings{.gpuFrequency = true, .gpuUtilization = true};
  return {ui::powerPanel(*models.power.snapshot(), random),
          ui::frequencyPanel(*models.frequency.snapshot(), settings, random),
          ui::temperaturePanel(*models.temperature.snapshot(), settings, random),
          ui::utilizationPanel(*models.utilization.snapshot(), settings, random)};
}

/// Whether the document's figures reach the line: what is counted is work, not a refusal.
void checkRoad(SampleRoad& road, const base::Bytes& bytes) {
  const std::string empty = SampleRoad(largestMachine()).take({});
  if (bytes.size() > 50'000 && road.take(bytes) != empty) return;
  std::fputs("the document's figures do not reach the log line\n", stderr);
  std::exit(1);
}

}  // namespace

void countSamples() {
  const base::Bytes bytes = exampleDocument();
  count({"libplist"}, [&] { parseAndFree(bytes); });

  SampleRoad road(largestMachine());
  checkRoad(road, bytes);
  for (std::size_t i = 0; i < modules::MetricHistory::kHistoryLength; ++i) road.take(bytes);
  count({"road"}, [&] { road.take(bytes); });

  fakes::ScriptedRandomNumbers random;
  base::Bytes large;
  count(
      {"panels"},
      [&] {
        road.take(bytes);
        // The parse leaves many small blocks, which the C library tidies up when it is next asked
        // for a large one: that is the parse's work.
        large = base::Bytes(bytes.size());
      },
      [&] { panelsOf(road.models(), random); });
}

}  // namespace pallimo::benchmarks
