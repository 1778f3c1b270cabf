// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Real documents of real machines, read where they lie. The figures were taken from the documents
// by another reader (Python's plistlib) and are written here as it printed them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/libplist/wanted_part.h"
#include "sampling/sample_parser.h"

namespace pallimo::sampling {
namespace {

using base::PropertyList;

std::vector<std::filesystem::path> capturedFiles() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(PALLIMO_SAMPLES_DIR)) {
    const auto extension = entry.path().extension();
    if (extension == ".plist" || extension == ".stream") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string contents(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The documents of a file; a NUL stands between two of them.
std::vector<std::string> documents(const std::filesystem::path& file) {
  std::vector<std::string> all(1);
  for (const char c : contents(file)) {
    if (c == '\0') {
      all.emplace_back();
    } else {
      all.back() += c;
    }
  }
  return all;
}

PropertyList parse(std::string_view bytes) {
  const adapters::libplist::LibplistReader reader;
  return parseSample(reader, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

PropertyList captured(const std::string& name, std::size_t index = 0) {
  return parse(documents(std::filesystem::path(PALLIMO_SAMPLES_DIR) / name).at(index));
}

PowerValues power(std::int64_t cpu, std::int64_t gpu, double combined) {
  return {{"cpu_energy", PropertyList(cpu)},
          {"gpu_energy", PropertyList(gpu)},
          {"ane_energy", PropertyList(std::int64_t{0})},
          {"combined_power", PropertyList(combined)}};
}

ClusterFrequencies megahertz(double e, double p) { return {{"E-Cluster", e}, {"P-Cluster", p}}; }

ClusterCPUs cpus(std::vector<std::int64_t> e, std::vector<std::int64_t> p) {
  return {{"E-Cluster", std::move(e)}, {"P-Cluster", std::move(p)}};
}

GPUFrequency gpu(double frequency) { return {{"freq_hz", PropertyList(frequency)}}; }

TEST(CapturedDocuments, AreTheOnesThatTheseTestsKnow) {
  std::vector<std::string> names;
  for (const auto& file : capturedFiles()) names.push_back(file.filename().string());
  EXPECT_EQ(names,
            (std::vector<std::string>{"m1-pro-five-samples.stream", "m1.plist", "m2-ultra.plist",
                                      "m3-max-cpu-power-zero.plist", "m4-pro-five-samples.stream",
                                      "m4-pro-gpu-only.plist"}));
}

TEST(CapturedDocuments, AllParse) {
  const adapters::libplist::LibplistReader reader;
  for (const auto& file : capturedFiles()) {
    for (const std::string& document : documents(file)) {
      const auto whole =
          reader.read({reinterpret_cast<const std::uint8_t*>(document.data()), document.size()});
      ASSERT_TRUE(whole && whole->find("hw_model") != nullptr) << file;
      EXPECT_TRUE(whole->find("elapsed_ns")->isNumber()) << file;
    }
  }
}

// Otherwise libplist would make a tree of all of it, which costs five times as much.
TEST(CapturedDocuments, AreAllSoPlainThatTheyCanBeReadInPart) {
  const ports::Wanted energy{{"processor", {{"cpu_energy"}}}};
  for (const auto& file : capturedFiles()) {
    for (const std::string& document : documents(file)) {
      std::string scratch;
      EXPECT_LT(adapters::libplist::wantedPart(document, energy, scratch).size(), 2'000U) << file;
    }
  }
}

TEST(CapturedDocuments, ParseAlikeWithANULAndTheNextDocumentBehindThem) {
  for (const auto& file : capturedFiles()) {
    EXPECT_TRUE(parse(contents(file) + std::string("\0junk", 5)) == parse(documents(file)[0]))
        << file;
  }
}

TEST(CapturedDocuments, AreEmptySamplesWhenTheyAreCutShort) {
  for (const auto& file : capturedFiles()) {
    const std::string document = documents(file)[0];
    for (std::size_t length = 0; length + 1 < document.size(); length += 97) {
      ASSERT_TRUE(parse(std::string_view(document).substr(0, length)) == PropertyList())
          << file << " cut at " << length;
    }
  }
}

TEST(CapturedDocuments, ComeInFivesInAStream) {
  const std::filesystem::path folder(PALLIMO_SAMPLES_DIR);
  EXPECT_EQ(documents(folder / "m1-pro-five-samples.stream").size(), 5U);
  EXPECT_EQ(documents(folder / "m4-pro-five-samples.stream").size(), 5U);
}

TEST(CapturedDocuments, OfAnM1) {
  const PropertyList sample = captured("m1.plist");
  EXPECT_EQ(powerValues(sample), power(89, 31, 59.4301));
  EXPECT_EQ(clusterFrequencies(sample), megahertz(1022.87, 618.173));
  EXPECT_EQ(gpuFrequency(sample), gpu(714.836));
  EXPECT_EQ(clusterCPUs(sample), cpus({0, 1, 2, 3}, {4, 5, 6, 7}));
}

TEST(CapturedDocuments, OfAnM2UltraWithTwoEfficiencyAndFourPerformanceClusters) {
  const PropertyList sample = captured("m2-ultra.plist");
  EXPECT_EQ(powerValues(sample), power(855, 72607, 71759.8));
  EXPECT_EQ(clusterFrequencies(sample), megahertz(990.818, 3481.97));
  EXPECT_EQ(gpuFrequency(sample), gpu(1360.85));
  EXPECT_EQ(clusterCPUs(sample), cpus({0, 1, 2, 3, 12, 13, 14, 15},
                                      {4, 5, 6, 7, 8, 9, 10, 11, 16, 17, 18, 19, 20, 21, 22, 23}));
}

TEST(CapturedDocuments, OfAnM3MaxWhoseCPUEnergyIsZero) {
  const PropertyList sample = captured("m3-max-cpu-power-zero.plist");
  EXPECT_EQ(powerValues(sample), power(0, 1747, 1726.53));
  EXPECT_EQ(clusterFrequencies(sample), megahertz(1390.54, 3646.14));
  EXPECT_EQ(gpuFrequency(sample), gpu(749.789));
  EXPECT_EQ(clusterCPUs(sample), cpus({0, 1, 2, 3}, {4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
}

TEST(CapturedDocuments, OfAnM4ProWithTheGPUAlone) {
  const PropertyList sample = captured("m4-pro-gpu-only.plist");
  EXPECT_EQ(powerValues(sample), PowerValues());
  EXPECT_EQ(clusterFrequencies(sample), megahertz(0, 0));
  EXPECT_EQ(gpuFrequency(sample), gpu(338));
  EXPECT_EQ(clusterCPUs(sample), ClusterCPUs());
}

struct Figures {
  PowerValues power;
  ClusterFrequencies frequencies;
};

void expectStream(const std::string& name, const std::vector<Figures>& expected,
                  const ClusterCPUs& numbers) {
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const PropertyList sample = captured(name, i);
    EXPECT_EQ(powerValues(sample), expected[i].power) << i;
    EXPECT_EQ(clusterFrequencies(sample), expected[i].frequencies) << i;
    EXPECT_EQ(gpuFrequency(sample), GPUFrequency()) << i;
    EXPECT_EQ(clusterCPUs(sample), numbers) << i;
  }
}

TEST(CapturedDocuments, OfAnM1ProFiveTimes) {
  expectStream("m1-pro-five-samples.stream",
               {{power(1122, 34, 1150.2), megahertz(1095.43, 1744.18)},
                {power(337, 19, 350.646), megahertz(1089.67, 868.108)},
                {power(1074, 25, 1085.85), megahertz(1056.26, 1497.02)},
                {power(223, 17, 236.62), megahertz(1236.82, 821.332)},
                {power(1319, 36, 1337.42), megahertz(1156.98, 1790.89)}},
               cpus({0, 1}, {2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(CapturedDocuments, OfAnM4ProFiveTimes) {
  expectStream("m4-pro-five-samples.stream",
               {{power(170, 105, 271.626), megahertz(1871.62, 1635.41)},
                {power(100, 97, 193.229), megahertz(1868.94, 1374.2)},
                {power(112, 101, 208.914), megahertz(1896.08, 1406.24)},
                {power(109, 104, 208.867), megahertz(1935.92, 1376.89)},
                {power(103, 100, 199.175), megahertz(1914.17, 1372.13)}},
               cpus({0, 1, 2, 3}, {4, 5, 6, 7, 8, 9, 10, 11}));
}

}  // namespace
}  // namespace pallimo::sampling

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (!std::filesystem::is_directory(PALLIMO_SAMPLES_DIR)) {
    std::cout << "captured documents not tested: there is no folder " PALLIMO_SAMPLES_DIR
                 " (set PALLIMO_SAMPLES to where they are)\n";
    return 77;
  }
  return RUN_ALL_TESTS();
}
