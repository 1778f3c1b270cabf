// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Real documents of real machines on the whole road: recordings made of them, read by the real app
// through the real helper. The expected columns were computed from the documents by another program
// (Python's plistlib and its number formats) and are written here as it printed them.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "end_to_end/app_fixture.h"
#include "logging/log_file_data.h"

namespace pallimo::end_to_end {
namespace {

using Texts = std::vector<std::string>;

class CapturedRoad : public AppWithHelperTest {
 protected:
  /// A recording whose n-th step is the n-th document of the file.
  std::string recordingOf(const std::string& capturedFile) const {
    const fs::path folder = root_ / "recording";
    fs::create_directory(folder);
    std::ofstream machine(folder / "machine.json");
    machine << R"({"format": 1, "name": "Captured", "sysctl": {"hw.cputype": 16777228, )"
            << R"("hw.model": "Mac14,2", "machdep.cpu.brand_string": "Apple M2"}, "steps": [)";
    std::istringstream documents(textOf(fs::path(PALLIMO_SAMPLES_DIR) / capturedFile));
    int step = 0;
    for (std::string document; std::getline(documents, document, '\0');) {
      const std::string file = std::to_string(++step) + ".plist";
      std::ofstream(folder / file) << document;
      machine << (step > 1 ? ", " : "") << R"({"powermetrics": ")" << file << R"("})";
    }
    machine << "]}";
    return folder;
  }

  /// Power (package, CPU, DRAM, ANE, GPU) and frequency (E, P, GPU) of every row but the times.
  Texts figuresOfARun(const std::string& capturedFile, std::size_t samples) const {
    const auto app = startHeadless({"--format", "csv", "--samples", std::to_string(samples),
                                    "--speed", "20", "--machine", recordingOf(capturedFile)});
    EXPECT_EQ(app->readLine(), std::string(logging::kCsvHeader));
    Texts rows;
    while (const auto line = app->readLine()) {
      const Texts columns = columnsOf(*line);
      EXPECT_EQ(columns.size(), 18u);
      std::string figures;
      for (std::size_t column = 2; column < 10 && column < columns.size(); ++column) {
        figures += (column > 2 ? ", " : "") + columns[column];
      }
      rows.push_back(figures);
    }
    EXPECT_EQ(app->exitStatus(), 0) << app->errorText();
    return rows;
  }
};

TEST_F(CapturedRoad, M1) {
  EXPECT_EQ(figuresOfARun("m1.plist", 1),
            (Texts{"0.059, 0.178, 0.000, 0.000, 0.062, 1023, 618, 715"}));
}

TEST_F(CapturedRoad, M1ProStream) {
  EXPECT_EQ(figuresOfARun("m1-pro-five-samples.stream", 5),
            (Texts{"1.150, 2.244, 0.000, 0.000, 0.068, 1095, 1744, 0",
                   "0.351, 0.674, 0.000, 0.000, 0.038, 1090, 868, 0",
                   "1.086, 2.148, 0.000, 0.000, 0.050, 1056, 1497, 0",
                   "0.237, 0.446, 0.000, 0.000, 0.034, 1237, 821, 0",
                   "1.337, 2.638, 0.000, 0.000, 0.072, 1157, 1791, 0"}));
}

TEST_F(CapturedRoad, M2UltraWithTwoEfficiencyAndFourPerformanceClusters) {
  EXPECT_EQ(figuresOfARun("m2-ultra.plist", 1),
            (Texts{"71.760, 1.710, 0.000, 0.000, 145.214, 991, 3482, 1361"}));
}

TEST_F(CapturedRoad, M3MaxWithoutCpuPower) {
  EXPECT_EQ(figuresOfARun("m3-max-cpu-power-zero.plist", 1),
            (Texts{"1.727, 0.000, 0.000, 0.000, 3.494, 1391, 3646, 750"}));
}

TEST_F(CapturedRoad, M4ProStream) {
  EXPECT_EQ(figuresOfARun("m4-pro-five-samples.stream", 5),
            (Texts{"0.272, 0.340, 0.000, 0.000, 0.210, 1872, 1635, 0",
                   "0.193, 0.200, 0.000, 0.000, 0.194, 1869, 1374, 0",
                   "0.209, 0.224, 0.000, 0.000, 0.202, 1896, 1406, 0",
                   "0.209, 0.218, 0.000, 0.000, 0.208, 1936, 1377, 0",
                   "0.199, 0.206, 0.000, 0.000, 0.200, 1914, 1372, 0"}));
}

TEST_F(CapturedRoad, M4ProWithTheGpuAlone) {
  EXPECT_EQ(figuresOfARun("m4-pro-gpu-only.plist", 1),
            (Texts{"0.000, 0.000, 0.000, 0.000, 0.000, 0, 0, 338"}));
}

TEST_F(CapturedRoad, AfterTheLastStepARecordingBeginsAgain) {
  const Texts rows = figuresOfARun("m1-pro-five-samples.stream", 7);
  ASSERT_EQ(rows.size(), 7u);
  EXPECT_EQ(rows[5], rows[0]);
  EXPECT_EQ(rows[6], rows[1]);
}

}  // namespace
}  // namespace pallimo::end_to_end

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (!std::filesystem::is_directory(PALLIMO_SAMPLES_DIR)) {
    std::cout << "The folder of captured documents is absent, nothing was tested: "
              << PALLIMO_SAMPLES_DIR << std::endl;
    constexpr int kSkipped = 77;
    return kSkipped;
  }
  return RUN_ALL_TESTS();
}
