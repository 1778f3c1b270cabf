// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_process_information.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace pallimo::adapters::qt {
namespace {

/// The system's value of that name, without quotation marks; empty where it has none.
std::string osRelease(const std::string& name) {
  std::ifstream file("/etc/os-release");
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(name + "=", 0) != 0) continue;
    line.erase(0, name.size() + 1);
    std::erase(line, '"');
    return line;
  }
  return {};
}

TEST(QtProcessInformation, TheSystemIsNamedWithItsVersion) {
  const std::string version = QtProcessInformation().operatingSystemVersionString();
  EXPECT_FALSE(version.empty());
  // Some systems that go on without releases have no number.
  EXPECT_NE(version.find(osRelease("VERSION_ID")), std::string::npos) << version;
}

TEST(QtProcessInformation, ItIsOneLine) {
  EXPECT_EQ(QtProcessInformation().operatingSystemVersionString().find('\n'), std::string::npos);
}

}  // namespace
}  // namespace pallimo::adapters::qt
