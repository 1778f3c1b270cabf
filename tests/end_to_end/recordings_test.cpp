// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The richest of tests/recordings through the real app, helper and stand-in: the rows are those
// that the same program gives in one process.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "end_to_end/app_fixture.h"
#include "logging/log_file_data.h"

namespace pallimo::end_to_end {
namespace {

class Recordings : public AppWithHelperTest {
 protected:
  static fs::path folderOf(const std::string& recording) {
    return fs::path(PALLIMO_SOURCE_DIR) / "tests/recordings" / recording;
  }

  /// The rows that the recording must give; a request without a row is left out.
  static Texts expectedRows(const std::string& recording) {
    Texts rows;
    std::ifstream file(folderOf(recording) / "expected.csv");
    for (std::string line; std::getline(file, line);) {
      if (line != "-") rows.push_back(line);
    }
    return rows;
  }

  /// The rows of a run, without the times.
  Texts rowsOfARun(const std::string& recording, std::size_t samples) const {
    const auto app = startHeadless({"--format", "csv", "--samples", std::to_string(samples),
                                    "--speed", "20", "--machine", folderOf(recording)});
    EXPECT_EQ(app->readLine(), std::string(logging::kCsvHeader));
    Texts rows;
    while (const auto line = app->readLine()) rows.push_back(figuresOf(*line));
    EXPECT_EQ(app->exitStatus(), 0) << app->errorText();
    return rows;
  }

  void expectItsRows(const std::string& recording) const {
    const Texts expected = expectedRows(recording);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(rowsOfARun(recording, expected.size()), expected);
  }
};

TEST_F(Recordings, DocumentsThatFailInEveryWay) { expectItsRows("documents"); }

TEST_F(Recordings, DocumentsThatComeLate) { expectItsRows("documents-come-late"); }

TEST_F(Recordings, LowReadingsOfAnM2) { expectItsRows("m2-low-readings"); }

TEST_F(Recordings, AnM4ProAtWork) { expectItsRows("m4-pro-at-work"); }

}  // namespace
}  // namespace pallimo::end_to_end
