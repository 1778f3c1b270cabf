// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace pallimo::adapters::simulated {

/// Where this process keeps its temporary folders, gone at its end. A death test's process inherits
/// the place with its environment: it dies without tidying up, and what it leaves goes here.
class ProcessFolder {
 public:
  ProcessFolder() {
    path_ = ::testing::TempDir() + "pallimo-XXXXXX";
    if (mkdtemp(path_.data()) != nullptr) setenv("TEST_TMPDIR", (path_ + "/").c_str(), 1);
  }
  ~ProcessFolder() {
    std::error_code ignored;
    if (getpid() == owner_) std::filesystem::remove_all(path_, ignored);
  }
  ProcessFolder(const ProcessFolder&) = delete;
  ProcessFolder& operator=(const ProcessFolder&) = delete;

 private:
  const pid_t owner_ = getpid();
  std::string path_;
};
inline const ProcessFolder kProcessFolder;

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
