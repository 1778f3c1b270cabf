// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/readout.h"

#include <gtest/gtest.h>

#include <limits>

#include "unit/ui/panel_drawing.h"

namespace pallimo::ui {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// A temperature panel with two samples of the CPU and three of the GPU.
Panel warmPanel() {
  modules::ModuleModelTemperature::Snapshot model;
  model.historicCPUMin = history({46.4, 40});
  model.historicCPUMax = history({58.6, 55});
  model.historicCPUAvg = history({52.374, kNan});
  model.historicGPUAvg = history({99.996, 100, 60});
  CountingRandom random;
  return temperaturePanel(model, {}, random);
}

TEST(SampleIndex, IsTheNearestWholePointFromTheRightEdge) {
  EXPECT_EQ(sampleIndexAt(300, 300), 0u);
  EXPECT_EQ(sampleIndexAt(299.6, 300), 0u);
  EXPECT_EQ(sampleIndexAt(299.4, 300), 1u);
  EXPECT_EQ(sampleIndexAt(299, 300), 1u);
  EXPECT_EQ(sampleIndexAt(100, 300), 200u);
  EXPECT_EQ(sampleIndexAt(0, 300), 300u);
}

TEST(SampleIndex, HalfwayItIsTheOlderOne) { EXPECT_EQ(sampleIndexAt(298.5, 300), 2u); }

TEST(SampleIndex, CountsFromTheEdgeOfABoxOfAnyWidth) {
  EXPECT_EQ(sampleIndexAt(300.5, 300.5), 0u);
  EXPECT_EQ(sampleIndexAt(299.5, 300.5), 1u);
}

TEST(SampleIndex, ThereIsNoneBesideTheBox) {
  EXPECT_EQ(sampleIndexAt(300.1, 300), std::nullopt);
  EXPECT_EQ(sampleIndexAt(-0.1, 300), std::nullopt);
  EXPECT_EQ(sampleIndexAt(kNan, 300), std::nullopt);
}

TEST(ReadoutEntries, AreTheSeriesInTheirOrderAndColoursFormattedAsTheirFigures) {
  EXPECT_EQ(readoutEntries(warmPanel(), 0),
            (std::vector<ReadoutEntry>{{"CORE MIN", "46", SeriesColor::purple},
                                       {"CORE MAX", "59", SeriesColor::blue},
                                       {"CORE AVG", "52.37", SeriesColor::cyan},
                                       {"GPU AVG", "100.00", SeriesColor::pink}}));
}

TEST(ReadoutEntries, AGapIsNotANumber) {
  EXPECT_EQ(readoutEntries(warmPanel(), 1)[2],
            (ReadoutEntry{"CORE AVG", "nan", SeriesColor::cyan}));
}

TEST(ReadoutEntries, LeaveOutSeriesThatDoNotReachBack) {
  EXPECT_EQ(readoutEntries(warmPanel(), 2),
            (std::vector<ReadoutEntry>{{"GPU AVG", "60.00", SeriesColor::pink}}));
  EXPECT_TRUE(readoutEntries(warmPanel(), 3).empty());
}

TEST(ReadoutEntries, TheNewestSaysExactlyWhatTheFigureSays) {
  // 0.975 / 30 * 30 is another number than 0.975 and rounds the other way.
  modules::ModuleModelPower::Snapshot model;
  model.axisMaxValue = 30;
  CountingRandom random;
  for (int i = 0; i < 2000; ++i) {
    model.CPUEnergy = i * 0.005;
    model.historicCPU = history({model.CPUEnergy});
    const Panel panel = powerPanel(model, random);
    EXPECT_EQ(readoutEntries(panel, 0)[0].value, panel.columns[1].values[0].value);
  }
}

TEST(AgeText, CountsSecondsBelowAMinute) {
  EXPECT_EQ(ageText(seconds(0)), "0 s ago");
  EXPECT_EQ(ageText(seconds(12)), "12 s ago");
  EXPECT_EQ(ageText(seconds(59)), "59 s ago");
}

TEST(AgeText, CountsMinutesAndSecondsBelowAnHour) {
  EXPECT_EQ(ageText(seconds(60)), "1 min 0 s ago");
  EXPECT_EQ(ageText(seconds(200)), "3 min 20 s ago");
  EXPECT_EQ(ageText(seconds(3599)), "59 min 59 s ago");
}

TEST(AgeText, CountsHoursAndMinutesFromThenOn) {
  EXPECT_EQ(ageText(hours(1)), "1 h 0 min ago");
  EXPECT_EQ(ageText(hours(2) + minutes(5) + seconds(59)), "2 h 5 min ago");
  EXPECT_EQ(ageText(hours(49)), "49 h 0 min ago");
}

TEST(AgeText, RoundsToTheNearestSecond) {
  EXPECT_EQ(ageText(milliseconds(4980)), "5 s ago");
  EXPECT_EQ(ageText(milliseconds(5020)), "5 s ago");
  EXPECT_EQ(ageText(milliseconds(59600)), "1 min 0 s ago");
}

TEST(AgeText, ATimeToComeIsNow) { EXPECT_EQ(ageText(-hours(1)), "0 s ago"); }

struct ReadoutFixture {
  SampleTimes::TimePoint start = SampleTimes::TimePoint(hours(100));
  SampleTimes times;

  ReadoutFixture() {
    for (int i = 0; i < 3; ++i) times.add(start + seconds(10 * i));
  }
  std::optional<Readout> at(double x) {
    return readoutAt(x, 300, warmPanel(), times.newestFirst(), start + seconds(22));
  }
};

TEST(Readout, TellsFiguresAgeAndPlaceOfTheSampleUnderThePointer) {
  ReadoutFixture f;
  const auto readout = f.at(298.2);
  ASSERT_TRUE(readout);
  EXPECT_EQ(readout->x, 298);
  EXPECT_EQ(readout->entries, readoutEntries(warmPanel(), 2));
  EXPECT_EQ(readout->age, "22 s ago");
  EXPECT_EQ(f.at(300)->age, "2 s ago");
}

TEST(Readout, ThereIsNoneWithoutASample) {
  ReadoutFixture f;
  EXPECT_EQ(f.at(297), std::nullopt);
  EXPECT_EQ(f.at(10), std::nullopt);
}

TEST(Readout, ThereIsNoneBesideTheBox) {
  ReadoutFixture f;
  EXPECT_EQ(f.at(301), std::nullopt);
}

TEST(Readout, WithoutAnArrivalTimeItHasNoAge) {
  ReadoutFixture f;
  f.times.clear();
  const auto readout = f.at(300);
  ASSERT_TRUE(readout);
  EXPECT_EQ(readout->age, "");
  EXPECT_EQ(readout->entries.size(), 4u);
}

}  // namespace
}  // namespace pallimo::ui
