// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sampling/sample_parser.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "unit/base/comma_locale.h"

namespace pallimo::sampling {
namespace {

using base::PropertyList;

PropertyList parse(std::string_view bytes) {
  const adapters::libplist::LibplistReader reader;
  return parseSample(reader, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

/// The sample of a document with these entries at its top.
PropertyList sample(const std::string& entries) {
  return parse("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" +
               entries + "</dict></plist>\n");
}

std::string entry(const std::string& key, const std::string& value) {
  return "<key>" + key + "</key>" + value;
}

std::string dict(const std::string& entries) { return "<dict>" + entries + "</dict>"; }
std::string array(const std::string& values) { return "<array>" + values + "</array>"; }

PropertyList processor(const std::string& entries) {
  return sample(entry("processor", dict(entries)));
}

PropertyList clusters(const std::string& entries) {
  return processor(entry("clusters", array(entries)));
}

std::string named(const std::string& name, const std::string& more = "") {
  return dict(entry("name", "<string>" + name + "</string>") + more);
}

std::string running(const std::string& name, const std::string& frequency) {
  return named(name, entry("freq_hz", frequency));
}

std::string hertz(const std::string& figure) { return "<real>" + figure + "</real>"; }

std::string cpu(const std::string& number) { return dict(entry("cpu", number)); }

std::string holding(const std::string& name, const std::vector<int>& numbers) {
  std::string cpus;
  for (const int number : numbers) cpus += cpu("<integer>" + std::to_string(number) + "</integer>");
  return named(name, entry("cpus", array(cpus)));
}

ClusterFrequencies megahertz(double e, double p) { return {{"E-Cluster", e}, {"P-Cluster", p}}; }

ClusterCPUs cpus(std::vector<std::int64_t> e, std::vector<std::int64_t> p) {
  return {{"E-Cluster", std::move(e)}, {"P-Cluster", std::move(p)}};
}

const std::array<std::string, 11> kSuffixes = {"",  "0", "1", "2", "3", "4",
                                               "5", "6", "7", "8", "9"};

// Parsing

TEST(SampleParser, HoldsOfTheTopLevelDictionaryWhatIsLookedAt) {
  const std::string looked =
      entry(
          "processor",
          dict(
              entry("clusters",
                    array(dict(entry("name", "<string>E-Cluster</string>") +
                               entry("freq_hz", hertz("1e9")) +
                               entry("cpus", array(dict(entry("cpu", "<integer>0</integer>"))))))) +
              entry("cpu_energy", "<integer>1</integer>") +
              entry("dram_energy", "<integer>2</integer>") +
              entry("combined_power", "<integer>3</integer>") +
              entry("gpu_energy", "<integer>4</integer>") +
              entry("ane_energy", "<integer>5</integer>"))) +
      entry("gpu", dict(entry("freq_hz", hertz("338"))));
  const adapters::libplist::LibplistReader reader;
  const std::string whole = "<dict>" + looked + "</dict>";
  EXPECT_EQ(sample(looked),
            reader.read({reinterpret_cast<const std::uint8_t*>(whole.data()), whole.size()}));
}

TEST(SampleParser, LeavesOutWhatNobodyLooksAt) {
  const std::string states = array(dict(entry("freq", "<integer>600</integer>")));
  EXPECT_EQ(sample(entry("elapsed_ns", "<integer>1</integer>") +
                   entry("processor", dict(entry("idle_ns", "<integer>1</integer>"))) +
                   entry("gpu", dict(entry("dvfm_states", states) + entry("sw_state", states)))),
            sample(entry("processor", dict("")) + entry("gpu", dict(""))));
}

// A module takes what is no number for nothing, whatever else it may be.
TEST(SampleParser, LeavesAFigureUnchangedWhateverItIs) {
  const auto energy = powerValues(
      processor(entry("cpu_energy", dict(entry("other", array("<true/><string>a</string>"))))));
  const PropertyList expected(base::PropertyListDictionary{
      {"other",
       PropertyList(base::PropertyListArray{PropertyList(true), PropertyList(std::string("a"))})}});
  EXPECT_EQ(energy.at("cpu_energy"), expected);
}

TEST(SampleParser, GivesAnEmptySampleForBytesThatAreNoPropertyList) {
  EXPECT_EQ(parse("\x8f\x03\xd2\x77 random"), PropertyList());
  EXPECT_EQ(parse(""), PropertyList());
}

TEST(SampleParser, GivesAnEmptySampleForATruncatedDocument) {
  EXPECT_EQ(parse("<plist><dict><key>a</key><integer>1</integer>"), PropertyList());
}

TEST(SampleParser, GivesAnEmptySampleWhenTheTopLevelIsNoDictionary) {
  EXPECT_EQ(parse("<plist><array><integer>1</integer></array></plist>"), PropertyList());
  EXPECT_EQ(parse("<plist><string>processor</string></plist>"), PropertyList());
  EXPECT_EQ(parse("<plist><integer>1</integer></plist>"), PropertyList());
}

TEST(SampleParser, ReadsABinaryDocument) {
  // {"gpu": {"freq_hz": 7}}
  constexpr std::string_view kDocument(
      "bplist00\xD1\x01\x02Sgpu\xD1\x03\x04Wfreq_hz\x10\x07"
      "\x08\x0B\x0F\x12\x1A"
      "\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x05\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x1C",
      65);
  EXPECT_EQ(gpuFrequency(parse(kDocument)).at("freq_hz"), PropertyList(std::int64_t{7}));
}

TEST(SampleParser, FillsTheNextSampleAfterABadOne) {
  EXPECT_EQ(gpuFrequency(parse("junk")), GPUFrequency());
  EXPECT_EQ(gpuFrequency(sample(entry("gpu", dict(entry("freq_hz", hertz("338")))))).size(), 1U);
}

TEST(SampleParser, PrintsNothingAboutABadDocument) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  parse("<plist><dict><key>a</key><bogus/></dict></plist>");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(SampleParser, LeavesEveryFigureEmptyOfAnEmptySample) {
  const PropertyList empty;
  EXPECT_EQ(powerValues(empty), PowerValues());
  EXPECT_EQ(clusterFrequencies(empty), megahertz(0, 0));
  EXPECT_EQ(gpuFrequency(empty), GPUFrequency());
  EXPECT_EQ(clusterCPUs(empty), ClusterCPUs());
}

TEST(SampleParser, LeavesEveryFigureEmptyOfASampleThatIsNoDictionary) {
  const PropertyList text(std::string("processor"));
  EXPECT_EQ(powerValues(text), PowerValues());
  EXPECT_EQ(clusterFrequencies(text), megahertz(0, 0));
  EXPECT_EQ(gpuFrequency(text), GPUFrequency());
  EXPECT_EQ(clusterCPUs(text), ClusterCPUs());
}

TEST(SampleParser, FindsOnlyTheGPUInASampleWithoutProcessor) {
  const PropertyList document = sample(entry("gpu", dict(entry("freq_hz", hertz("389.5")))));
  EXPECT_EQ(powerValues(document), PowerValues());
  EXPECT_EQ(clusterFrequencies(document), megahertz(0, 0));
  EXPECT_EQ(clusterCPUs(document), ClusterCPUs());
  EXPECT_EQ(gpuFrequency(document), (GPUFrequency{{"freq_hz", PropertyList(389.5)}}));
}

// Power values

TEST(PowerValues, HoldTheFiveFiguresAndNoOther) {
  const PropertyList document = processor(
      entry("ane_energy", "<integer>1</integer>") + entry("cpu_energy", "<integer>2</integer>") +
      entry("cpu_power", "<real>3</real>") + entry("dram_energy", "<integer>4</integer>") +
      entry("gpu_energy", "<integer>5</integer>") + entry("combined_power", "<real>6.5</real>"));
  EXPECT_EQ(powerValues(document), (PowerValues{{"ane_energy", PropertyList(std::int64_t{1})},
                                                {"cpu_energy", PropertyList(std::int64_t{2})},
                                                {"dram_energy", PropertyList(std::int64_t{4})},
                                                {"gpu_energy", PropertyList(std::int64_t{5})},
                                                {"combined_power", PropertyList(6.5)}}));
}

TEST(PowerValues, LeaveOutWhatTheDocumentDoesNotHold) {
  EXPECT_EQ(powerValues(processor(entry("gpu_energy", "<integer>5</integer>"))),
            (PowerValues{{"gpu_energy", PropertyList(std::int64_t{5})}}));
}

TEST(PowerValues, AreCopiedWhateverTheirKind) {
  const PowerValues values = powerValues(
      processor(entry("cpu_energy", "<string>much</string>") + entry("gpu_energy", "<true/>") +
                entry("ane_energy", "<array/>") + entry("combined_power", "<real>nan</real>")));
  EXPECT_EQ(values.at("cpu_energy"), PropertyList(std::string("much")));
  EXPECT_EQ(values.at("gpu_energy"), PropertyList(true));
  EXPECT_EQ(values.at("ane_energy"), PropertyList(base::PropertyListArray()));
  EXPECT_TRUE(std::isnan(values.at("combined_power").numberOr(0)));
}

TEST(PowerValues, AreNotTakenFromTheTopLevel) {
  EXPECT_EQ(powerValues(sample(entry("cpu_energy", "<integer>5</integer>"))), PowerValues());
}

TEST(PowerValues, AreEmptyWhenTheProcessorIsNoDictionary) {
  EXPECT_EQ(powerValues(sample(entry("processor", "<string>M1</string>"))), PowerValues());
  EXPECT_EQ(powerValues(sample(
                entry("processor", array(dict(entry("cpu_energy", "<integer>5</integer>")))))),
            PowerValues());
}

// Cluster frequencies

TEST(ClusterFrequencies, AreTheHighestOfEachKindInMegahertz) {
  EXPECT_EQ(clusterFrequencies(clusters(running("E-Cluster", "<integer>2064000000</integer>") +
                                        running("P0-Cluster", "<integer>3228000000</integer>") +
                                        running("P1-Cluster", "<integer>1260000000</integer>"))),
            megahertz(2064, 3228));
}

TEST(ClusterFrequencies, ReadIntegersAndRealsAlike) {
  EXPECT_EQ(clusterFrequencies(clusters(running("E-Cluster", hertz("1.02287e+09")) +
                                        running("P-Cluster", "<integer>600000000</integer>"))),
            megahertz(1022.87, 600));
}

TEST(ClusterFrequencies, KeepTheFractionUnderACommaLocale) {
  const tests::CommaLocale comma;
  EXPECT_EQ(clusterFrequencies(clusters(running("E-Cluster", hertz("1.02287e+09")))),
            megahertz(1022.87, 0));
}

TEST(ClusterFrequencies, TakeTheLaterOfTwoClustersWithTheSameName) {
  EXPECT_EQ(clusterFrequencies(clusters(running("P-Cluster", "<integer>1000000000</integer>") +
                                        running("P-Cluster", "<integer>500000000</integer>"))),
            megahertz(0, 500));
}

TEST(ClusterFrequencies, KeepTheEarlierWhenTheLaterOfTheSameNameHasNoFrequency) {
  EXPECT_EQ(clusterFrequencies(clusters(running("P-Cluster", hertz("1e9")) + named("P-Cluster") +
                                        running("P-Cluster", "<string>1</string>"))),
            megahertz(0, 1000));
}

TEST(ClusterFrequencies, KnowElevenNamesOfTheEfficiencyKind) {
  for (const std::string& suffix : kSuffixes) {
    EXPECT_EQ(clusterFrequencies(clusters(running("E" + suffix + "-Cluster", hertz("7e6")))),
              megahertz(7, 0))
        << suffix;
  }
}

TEST(ClusterFrequencies, KnowElevenNamesOfThePerformanceKind) {
  for (const std::string& suffix : kSuffixes) {
    EXPECT_EQ(clusterFrequencies(clusters(running("P" + suffix + "-Cluster", hertz("7e6")))),
              megahertz(0, 7))
        << suffix;
  }
}

TEST(ClusterFrequencies, IgnoreEveryOtherName) {
  for (const std::string name : {"E10-Cluster", "S-Cluster", "P-cluster", "e-Cluster", "E",
                                 "E-Cluster ", "PE-Cluster", "E--Cluster", "-Cluster", ""}) {
    EXPECT_EQ(clusterFrequencies(clusters(running(name, hertz("7e6")))), megahertz(0, 0)) << name;
  }
}

TEST(ClusterFrequencies, FindTheHighestWhereverItStands) {
  EXPECT_EQ(clusterFrequencies(clusters(running("E9-Cluster", hertz("9e6")) +
                                        running("E-Cluster", hertz("3e6")) +
                                        running("E4-Cluster", hertz("4e6")))),
            megahertz(9, 0));
}

TEST(ClusterFrequencies, SkipAClusterWithoutAUsableFrequency) {
  EXPECT_EQ(clusterFrequencies(
                clusters(named("E0-Cluster") + running("E1-Cluster", "<string>9e9</string>") +
                         running("E2-Cluster", "<true/>") + running("E3-Cluster", hertz("3e6")))),
            megahertz(3, 0));
}

TEST(ClusterFrequencies, SkipAnEntryWithoutATextForAName) {
  EXPECT_EQ(clusterFrequencies(clusters(
                "<dict/>" + dict(entry("freq_hz", hertz("9e9"))) +
                dict(entry("name", "<integer>1</integer>") + entry("freq_hz", hertz("9e9"))) +
                "<string>E-Cluster</string>" + array(running("E-Cluster", hertz("9e9"))) +
                running("P-Cluster", hertz("3e6")))),
            megahertz(0, 3));
}

TEST(ClusterFrequencies, NeverFallBelowZero) {
  EXPECT_EQ(clusterFrequencies(
                clusters(running("E-Cluster", hertz("-5e9")) + running("P-Cluster", hertz("nan")))),
            megahertz(0, 0));
}

TEST(ClusterFrequencies, AreZeroWhenTheClustersAreMissingOrOfTheWrongKind) {
  EXPECT_EQ(clusterFrequencies(processor("")), megahertz(0, 0));
  EXPECT_EQ(clusterFrequencies(processor(entry("clusters", running("E-Cluster", hertz("9e9"))))),
            megahertz(0, 0));
  EXPECT_EQ(clusterFrequencies(sample(entry("processor", array("")))), megahertz(0, 0));
  EXPECT_EQ(clusterFrequencies(clusters("")), megahertz(0, 0));
}

// GPU frequency

TEST(GPUFrequency, IsTheDocumentsValueUnchanged) {
  EXPECT_EQ(gpuFrequency(sample(entry("gpu", dict(entry("freq_hz", hertz("714.836")))))),
            (GPUFrequency{{"freq_hz", PropertyList(714.836)}}));
}

TEST(GPUFrequency, IsCopiedWhateverItsKind) {
  EXPECT_EQ(gpuFrequency(sample(entry("gpu", dict(entry("freq_hz", "<string>fast</string>"))))),
            (GPUFrequency{{"freq_hz", PropertyList(std::string("fast"))}}));
}

TEST(GPUFrequency, IsEmptyWithoutAGPUThatIsADictionaryWithThatKey) {
  EXPECT_EQ(gpuFrequency(sample("")), GPUFrequency());
  EXPECT_EQ(gpuFrequency(sample(entry("gpu", dict("")))), GPUFrequency());
  EXPECT_EQ(gpuFrequency(sample(entry("gpu", hertz("338")))), GPUFrequency());
  EXPECT_EQ(gpuFrequency(sample(entry("freq_hz", hertz("338")))), GPUFrequency());
}

TEST(GPUFrequency, IsReadFromAGPUThatRepeatsOtherKeys) {
  EXPECT_EQ(gpuFrequency(sample(entry("gpu", dict(entry("idle_ns", "<integer>1</integer>") +
                                                  entry("freq_hz", hertz("338")) +
                                                  entry("idle_ns", "<integer>2</integer>"))))),
            (GPUFrequency{{"freq_hz", PropertyList(338.0)}}));
}

// Cluster CPUs

TEST(ClusterCPUs, AreEachClustersNumbersInDocumentOrder) {
  EXPECT_EQ(clusterCPUs(clusters(holding("E-Cluster", {2, 0, 1}) + holding("P-Cluster", {3}))),
            cpus({2, 0, 1}, {3}));
}

TEST(ClusterCPUs, AreJoinedInTheOrderOfTheClustersNumbers) {
  EXPECT_EQ(clusterCPUs(clusters(holding("P1-Cluster", {6, 7}) + holding("P0-Cluster", {4, 5}))),
            cpus({}, {4, 5, 6, 7}));
}

TEST(ClusterCPUs, BeginWithTheUnnumberedCluster) {
  EXPECT_EQ(clusterCPUs(clusters(holding("E0-Cluster", {2}) + holding("E-Cluster", {9}))),
            cpus({9, 2}, {}));
}

TEST(ClusterCPUs, JoinAllElevenClustersOfAKind) {
  std::string entries;
  for (auto suffix = kSuffixes.rbegin(); suffix != kSuffixes.rend(); ++suffix) {
    const int number = suffix->empty() ? 20 : 30 + std::stoi(*suffix);
    entries += holding("E" + *suffix + "-Cluster", {number});
    entries += holding("P" + *suffix + "-Cluster", {number + 20});
  }
  EXPECT_EQ(clusterCPUs(clusters(entries)), cpus({20, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39},
                                                 {40, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59}));
}

TEST(ClusterCPUs, SkipWhatIsNoIntegralNumber) {
  const std::string entries = cpu("<integer>0</integer>") + cpu("<real>2.5</real>") +
                              cpu("<string>3</string>") + cpu("<real>nan</real>") + cpu("<true/>") +
                              dict(entry("name", "<string>x</string>")) + "<integer>8</integer>" +
                              "<dict/>" + cpu("<real>7.0</real>");
  EXPECT_EQ(clusterCPUs(clusters(named("E-Cluster", entry("cpus", array(entries))))),
            cpus({0, 7}, {}));
}

TEST(ClusterCPUs, KeepSixtyFourBits) {
  const std::string entries = cpu("<integer>-9223372036854775808</integer>") +
                              cpu("<integer>9223372036854775807</integer>") +
                              cpu("<integer>9223372036854775808</integer>");
  EXPECT_EQ(clusterCPUs(clusters(named("E-Cluster", entry("cpus", array(entries))))),
            cpus({INT64_MIN, INT64_MAX}, {}));
}

TEST(ClusterCPUs, EnterAClusterWithoutCPUsAsAnEmptyList) {
  EXPECT_EQ(clusterCPUs(clusters(named("E-Cluster"))), cpus({}, {}));
  EXPECT_EQ(clusterCPUs(clusters(named("P3-Cluster", entry("cpus", cpu("<integer>1</integer>"))))),
            cpus({}, {}));
}

TEST(ClusterCPUs, TakeTheLaterOfTwoClustersWithTheSameName) {
  EXPECT_EQ(clusterCPUs(clusters(holding("P-Cluster", {1, 2}) + holding("P-Cluster", {3}))),
            cpus({}, {3}));
  EXPECT_EQ(clusterCPUs(clusters(holding("P-Cluster", {1, 2}) + named("P-Cluster"))), cpus({}, {}));
}

TEST(ClusterCPUs, NeedNoFrequency) {
  EXPECT_EQ(clusterCPUs(clusters(holding("E-Cluster", {1}))), cpus({1}, {}));
}

TEST(ClusterCPUs, TakeNothingFromOtherNames) {
  EXPECT_EQ(clusterCPUs(clusters(holding("E10-Cluster", {1}) + holding("S-Cluster", {2}))),
            cpus({}, {}));
}

TEST(ClusterCPUs, AreEmptyWithoutANamedCluster) {
  EXPECT_EQ(clusterCPUs(clusters("")), ClusterCPUs());
  EXPECT_EQ(clusterCPUs(clusters("<dict/><string>E-Cluster</string>" +
                                 dict(entry("name", "<integer>1</integer>")))),
            ClusterCPUs());
}

TEST(ClusterCPUs, AreEmptyWhenTheClustersAreMissingOrOfTheWrongKind) {
  EXPECT_EQ(clusterCPUs(processor("")), ClusterCPUs());
  EXPECT_EQ(clusterCPUs(processor(entry("clusters", holding("E-Cluster", {1})))), ClusterCPUs());
  EXPECT_EQ(clusterCPUs(sample(entry("processor", "<integer>1</integer>"))), ClusterCPUs());
}

}  // namespace
}  // namespace pallimo::sampling
