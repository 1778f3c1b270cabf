// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/displays_report.h"

#include <gtest/gtest.h>

#include <string>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/simulated/machines/builtin_machine.h"

namespace pallimo::adapters::simulated {
namespace {

/// The report's only entry.
base::PropertyList reportOf(const MachineDescription& machine) {
  const auto report = libplist::LibplistReader().read(displaysReport(machine));
  if (!report || report->array() == nullptr || report->array()->size() != 1) {
    ADD_FAILURE() << "no array of one entry";
    return {};
  }
  return report->array()->front();
}

base::PropertyList graphicsOf(const MachineDescription& machine) {
  const auto report = reportOf(machine);
  const auto* items = report.find("_items");
  if (items == nullptr || items->array() == nullptr || items->array()->size() != 1) {
    ADD_FAILURE() << "no graphics processor";
    return {};
  }
  return items->array()->front();
}

std::string textOf(const base::PropertyList& from, const char* key) {
  const auto* value = from.find(key);
  return value == nullptr || value->text() == nullptr ? "(no text)" : *value->text();
}

TEST(DisplaysReport, SaysWhatItIs) {
  EXPECT_EQ(textOf(reportOf(macMiniM4()), "_dataType"), "SPDisplaysDataType");
}

TEST(DisplaysReport, GivesTheCoresOfTheGraphicsProcessorAsText) {
  EXPECT_EQ(textOf(graphicsOf(macBookAirM1()), "sppci_cores"), "8");
  EXPECT_EQ(textOf(graphicsOf(macStudioM2Ultra()), "sppci_cores"), "60");
}

TEST(DisplaysReport, NamesTheChip) {
  EXPECT_EQ(textOf(graphicsOf(macMiniM4()), "sppci_model"), "Apple M4");
  EXPECT_EQ(textOf(graphicsOf(macMiniM4()), "_name"), "Apple M4");
}

TEST(DisplaysReport, ListsTheScreen) {
  const auto graphics = graphicsOf(macBookProM2Pro());
  const auto& screens = *graphics.find("spdisplays_ndrvs")->array();
  ASSERT_EQ(screens.size(), 1u);
  EXPECT_EQ(textOf(screens.front(), "_name"), "Color LCD");
  EXPECT_EQ(textOf(screens.front(), "_spdisplays_pixels"), "3024 x 1964");
}

}  // namespace
}  // namespace pallimo::adapters::simulated
