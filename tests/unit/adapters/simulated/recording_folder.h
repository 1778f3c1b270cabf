// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace pallimo::adapters::simulated {

/// A folder of its own for one test, gone afterwards.
class RecordingFolder {
 public:
  RecordingFolder() {
    std::string path = ::testing::TempDir() + "pallimo-XXXXXX";
    if (mkdtemp(path.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    path_ = path;
  }
  ~RecordingFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  RecordingFolder(const RecordingFolder&) = delete;
  RecordingFolder& operator=(const RecordingFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string pathOf(const std::string& file) const { return path_ + "/" + file; }

  void write(const std::string& file, const std::string& text) const {
    std::filesystem::create_directories(std::filesystem::path(pathOf(file)).parent_path());
    std::ofstream(pathOf(file), std::ios::binary) << text;
  }
  std::string read(const std::string& file) const {
    std::ifstream stream(pathOf(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  std::string path_;
};

}  // namespace pallimo::adapters::simulated
