// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sg_system_profiler.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fakes/fake_program_launcher.h"

namespace pallimo::sensors {
namespace {

using base::PropertyList;
using base::PropertyListArray;
using base::PropertyListDictionary;

constexpr const char* kDisplays = "/usr/sbin/system_profiler -xml SPDisplaysDataType";

/// Knows one document; everything else is none.
class OneDocumentReader final : public ports::PropertyListReader {
 public:
  std::optional<PropertyList> readOnly(std::span<const std::uint8_t> bytes,
                                       const ports::Wanted& /*wanted*/) const override {
    return std::string(bytes.begin(), bytes.end()) == "the report" ? document : std::nullopt;
  }
  std::optional<PropertyList> document;
};

/// Starts nothing and keeps what it was asked to start.
class RecordingLauncher final : public ports::ProgramLauncher {
 public:
  std::optional<base::Bytes> run(const std::string& program,
                                 const std::vector<std::string>& words) override {
    path = program;
    arguments = words;
    return std::nullopt;
  }
  std::string path;
  std::vector<std::string> arguments;
};

PropertyList arrayOf(const PropertyList& value) {
  PropertyListArray array;
  array.push_back(value);
  return PropertyList(std::move(array));
}

PropertyList dictionaryOf(const std::string& key, const PropertyList& value) {
  PropertyListDictionary dictionary;
  dictionary.emplace_back(key, value);
  return PropertyList(std::move(dictionary));
}

PropertyList text(const std::string& value) { return PropertyList(value); }
PropertyList emptyArray() { return PropertyList(PropertyListArray()); }
PropertyList emptyDictionary() { return PropertyList(PropertyListDictionary()); }

PropertyList reportOf(const PropertyList& items) { return arrayOf(dictionaryOf("_items", items)); }
PropertyList reportWith(const PropertyList& cores) {
  return reportOf(arrayOf(dictionaryOf("sppci_cores", cores)));
}

/// A profiler that prints the report which the test sets.
class SGSystemProfilerTest : public ::testing::Test {
 protected:
  SGSystemProfilerTest() { launcher_.setOutput(kDisplays, "the report"); }

  std::optional<PropertyList> itemOf(const PropertyList& report) {
    reader_.document = report;
    return profiler_.profilerItem("SPDisplaysDataType");
  }
  std::int64_t coresIn(const PropertyList& report) {
    reader_.document = report;
    return profiler_.gpuCoreCount();
  }
  std::int64_t coresOf(const std::string& value) { return coresIn(reportWith(text(value))); }

  fakes::FakeProgramLauncher launcher_;
  OneDocumentReader reader_;
  const SGSystemProfiler profiler_{launcher_, reader_};
};

using ProfilerItem = SGSystemProfilerTest;
using GPUCoreCount = SGSystemProfilerTest;

TEST_F(ProfilerItem, RunsTheProfilerForXmlOnTheTypeOfData) {
  profiler_.profilerItem("SPHardwareDataType");
  EXPECT_EQ(launcher_.takeCommands(),
            std::vector<std::string>{"/usr/sbin/system_profiler -xml SPHardwareDataType"});
}

TEST(ProfilerArguments, AreXmlAndTheTypeOfDataAsOneArgumentEach) {
  RecordingLauncher launcher;
  const OneDocumentReader reader;
  SGSystemProfiler(launcher, reader).profilerItem("two words");
  EXPECT_EQ(launcher.path, "/usr/sbin/system_profiler");
  EXPECT_EQ(launcher.arguments, (std::vector<std::string>{"-xml", "two words"}));
}

TEST_F(ProfilerItem, IsTheFirstItemOfTheReport) {
  const PropertyList item = dictionaryOf("sppci_cores", text("8"));
  EXPECT_EQ(itemOf(reportOf(arrayOf(item))), item);
}

TEST_F(ProfilerItem, LooksAtTheFirstOfEachArrayOnly) {
  const PropertyList first = dictionaryOf("sppci_model", text("first"));
  const PropertyList second = dictionaryOf("sppci_model", text("second"));
  PropertyListArray items;
  items.push_back(first);
  items.push_back(second);
  PropertyListArray report;
  report.push_back(dictionaryOf("_items", PropertyList(std::move(items))));
  report.push_back(dictionaryOf("_items", arrayOf(second)));
  EXPECT_EQ(itemOf(PropertyList(std::move(report))), first);
}

TEST_F(ProfilerItem, MayBeAnEmptyDictionary) {
  EXPECT_EQ(itemOf(reportOf(arrayOf(emptyDictionary()))), emptyDictionary());
}

TEST_F(ProfilerItem, IsNothingWhenTheProfilerDoesNotStart) {
  reader_.document = reportWith(text("8"));
  EXPECT_EQ(profiler_.profilerItem("SPHardwareDataType"), std::nullopt);
}

TEST_F(ProfilerItem, IsNothingWhenTheOutputIsNoPropertyList) {
  reader_.document = reportWith(text("8"));
  launcher_.setOutput(kDisplays, "an error");
  EXPECT_EQ(profiler_.profilerItem("SPDisplaysDataType"), std::nullopt);
  launcher_.setOutput(kDisplays, "");
  EXPECT_EQ(profiler_.profilerItem("SPDisplaysDataType"), std::nullopt);
}

TEST_F(ProfilerItem, IsNothingWhenTheReportIsNoArray) {
  EXPECT_EQ(itemOf(dictionaryOf("_items", arrayOf(emptyDictionary()))), std::nullopt);
  EXPECT_EQ(itemOf(text("_items")), std::nullopt);
}

TEST_F(ProfilerItem, IsNothingWhenTheReportBeginsWithNoDictionary) {
  EXPECT_EQ(itemOf(arrayOf(text("_items"))), std::nullopt);
  EXPECT_EQ(itemOf(arrayOf(emptyArray())), std::nullopt);
}

TEST_F(ProfilerItem, IsNothingWithoutItems) {
  EXPECT_EQ(itemOf(arrayOf(emptyDictionary())), std::nullopt);
}

TEST_F(ProfilerItem, IsNothingWhenTheItemsAreNoArray) {
  EXPECT_EQ(itemOf(reportOf(emptyDictionary())), std::nullopt);
  EXPECT_EQ(itemOf(reportOf(text("8"))), std::nullopt);
}

TEST_F(ProfilerItem, IsNothingWhenTheFirstItemIsNoDictionary) {
  EXPECT_EQ(itemOf(reportOf(arrayOf(text("8")))), std::nullopt);
  EXPECT_EQ(itemOf(reportOf(arrayOf(emptyArray()))), std::nullopt);
}

TEST_F(ProfilerItem, IsNothingWhenAnArrayIsEmpty) {
  EXPECT_EQ(itemOf(emptyArray()), std::nullopt);
  EXPECT_EQ(itemOf(reportOf(emptyArray())), std::nullopt);
}

TEST_F(GPUCoreCount, AsksForTheDisplays) {
  profiler_.gpuCoreCount();
  EXPECT_EQ(launcher_.takeCommands(), std::vector<std::string>{kDisplays});
}

TEST_F(GPUCoreCount, IsTheNumberInTheText) {
  EXPECT_EQ(coresOf("10"), 10);
  EXPECT_EQ(coresOf("0"), 0);
  EXPECT_EQ(coresOf("007"), 7);
}

TEST_F(GPUCoreCount, MayHaveASign) {
  EXPECT_EQ(coresOf("+8"), 8);
  EXPECT_EQ(coresOf("-1"), -1);
  EXPECT_EQ(coresOf("-12"), -12);
}

TEST_F(GPUCoreCount, IsUnknownForAnEmptyText) { EXPECT_EQ(coresOf(""), -1); }

TEST_F(GPUCoreCount, IsUnknownForEveryOtherCharacter) {
  for (const char* value : {"ten", "10 ", " 10", "1 0", "10.0", "1e1", "0x0A", "10\n", "١٠"}) {
    EXPECT_EQ(coresOf(value), -1) << value;
  }
  EXPECT_EQ(coresOf(std::string("10\0", 3)), -1);
}

TEST_F(GPUCoreCount, IsUnknownForASignAlone) {
  EXPECT_EQ(coresOf("+"), -1);
  EXPECT_EQ(coresOf("-"), -1);
}

TEST_F(GPUCoreCount, IsUnknownForTwoSigns) {
  for (const char* value : {"+-8", "-+8", "++8", "--8"}) EXPECT_EQ(coresOf(value), -1) << value;
}

TEST_F(GPUCoreCount, ReachesBothEndsOf64Bits) {
  EXPECT_EQ(coresOf("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(coresOf("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

TEST_F(GPUCoreCount, IsUnknownBeyond64Bits) {
  EXPECT_EQ(coresOf("9223372036854775808"), -1);
  EXPECT_EQ(coresOf("-9223372036854775809"), -1);
}

TEST_F(GPUCoreCount, IsUnknownWhenItIsNoText) {
  EXPECT_EQ(coresIn(reportWith(PropertyList(std::int64_t{10}))), -1);
  EXPECT_EQ(coresIn(reportWith(arrayOf(text("10")))), -1);
}

TEST_F(GPUCoreCount, IsUnknownWhenTheItemDoesNotTell) {
  EXPECT_EQ(coresIn(reportOf(arrayOf(emptyDictionary()))), -1);
}

TEST_F(GPUCoreCount, IsUnknownWithoutAnItem) {
  EXPECT_EQ(coresIn(emptyArray()), -1);
  EXPECT_EQ(coresIn(reportOf(text("8"))), -1);
}

TEST(GPUCoreCountWithoutAProfiler, IsUnknown) {
  fakes::FakeProgramLauncher launcher;
  const OneDocumentReader reader;
  EXPECT_EQ(SGSystemProfiler(launcher, reader).gpuCoreCount(), -1);
}

}  // namespace
}  // namespace pallimo::sensors
