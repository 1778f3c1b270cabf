// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "sampling/sample_parser.h"

namespace pallimo::sampling {
namespace {

using Clusters = std::vector<Cluster>;

/// What stands in a document's list of clusters, whatever the list is.
Clusters ofProcessor(const std::string& processor) {
  const std::string text = R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)"
                           "<key>processor</key>" +
                           processor + "</dict></plist>";
  const base::Bytes bytes(text.begin(), text.end());
  return allClusters(parseSample(adapters::libplist::LibplistReader(), bytes));
}

Clusters ofList(const std::string& entries) {
  return ofProcessor("<dict><key>clusters</key><array>" + entries + "</array></dict>");
}

std::string cluster(const std::string& name, const std::string& hertz, const std::string& cpus) {
  return "<dict><key>name</key>" + name + "<key>freq_hz</key>" + hertz + "<key>cpus</key><array>" +
         cpus + "</array></dict>";
}

std::string cpuEntry(const std::string& number) {
  return "<dict><key>cpu</key>" + number + "</dict>";
}

TEST(AllClusters, AreThereWhateverTheyAreCalled) {
  EXPECT_EQ(
      ofList(cluster("<string>E-Cluster</string>", "<real>1020000000</real>",
                     cpuEntry("<integer>0</integer>")) +
             cluster("<string>M0-Cluster</string>", "<integer>4512250000</integer>",
                     cpuEntry("<integer>2</integer>") + cpuEntry("<integer>1</integer>")) +
             cluster("<string>P10-Cluster</string>", "<real>0</real>", "")),
      (Clusters{
          {"E-Cluster", 1020.0, {0}}, {"M0-Cluster", 4512.25, {2, 1}}, {"P10-Cluster", 0.0, {}}}));
}

TEST(AllClusters, OfOneNameAreAllThere) {
  const std::string one = cluster("<string>P-Cluster</string>", "<real>1000000</real>", "");
  const std::string other = cluster("<string>P-Cluster</string>", "<real>2000000</real>", "");
  EXPECT_EQ(ofList(one + other), (Clusters{{"P-Cluster", 1.0, {}}, {"P-Cluster", 2.0, {}}}));
}

TEST(AllClusters, WithoutANameAreThereToo) {
  EXPECT_EQ(ofList(cluster("<integer>3</integer>", "<real>1000000</real>", "") + "<dict/>"),
            (Clusters{{std::nullopt, 1.0, {}}, {std::nullopt, std::nullopt, {}}}));
}

TEST(AllClusters, TellNoFrequencyThatIsNoNumber) {
  EXPECT_EQ(ofList(cluster("<string>A</string>", "<string>1000000</string>", "") +
                   cluster("<string>B</string>", "<true/>", "")),
            (Clusters{{"A", std::nullopt, {}}, {"B", std::nullopt, {}}}));
}

TEST(AllClusters, KeepAFrequencyThatIsNotFinite) {
  const Clusters one = ofList(cluster("<string>A</string>", "<real>nan</real>", ""));
  ASSERT_EQ(one.size(), 1u);
  ASSERT_TRUE(one[0].frequency.has_value());
  EXPECT_TRUE(std::isnan(*one[0].frequency));
}

TEST(AllClusters, ListOnlyProcessorsWithAWholeNumber) {
  EXPECT_EQ(ofList(cluster("<string>A</string>", "<real>0</real>",
                           cpuEntry("<real>3</real>") + cpuEntry("<real>2.5</real>") +
                               "<integer>9</integer>" + cpuEntry("<string>4</string>") +
                               cpuEntry("<integer>-1</integer>"))),
            (Clusters{{"A", 0.0, {3, -1}}}));
}

TEST(AllClusters, AnEntryThatIsNoDictionaryIsNone) {
  EXPECT_EQ(ofList("<string>P-Cluster</string><array/><integer>3</integer>"), Clusters());
}

TEST(AllClusters, AreNoneInADocumentOfAnotherShape) {
  EXPECT_EQ(ofProcessor("<dict/>"), Clusters());
  EXPECT_EQ(ofProcessor("<array/>"), Clusters());
  EXPECT_EQ(ofProcessor("<dict><key>clusters</key><dict/></dict>"), Clusters());
  EXPECT_EQ(allClusters(base::PropertyList()), Clusters());
}

}  // namespace
}  // namespace pallimo::sampling
