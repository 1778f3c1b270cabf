// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <iostream>
#include <optional>
#include <sstream>
#include <string>

namespace pallimo::end_to_end {

/// For a test that this machine, or this user, does not allow: says so on the output and in the
/// report, so that a pass without a check is not taken for one with it. The test returns then.
inline void reportUntested(const std::string& reason) {
  std::cout << reason << ", nothing was tested.\n";
  ::testing::Test::RecordProperty("untested", reason);
}

/// Where the shell would find a program.
inline std::optional<std::string> programInPath(const std::string& name) {
  const char* path = getenv("PATH");
  std::istringstream folders(path == nullptr ? "" : path);
  for (std::string folder; std::getline(folders, folder, ':');) {
    const std::string program = folder + "/" + name;
    if (access(program.c_str(), X_OK) == 0) return program;
  }
  return std::nullopt;
}

/// For a test that needs Prometheus: the checks of a change set PALLIMO_DEMANDS_PROMETHEUS, so that
/// nobody takes a machine without it for one on which all is well.
inline void reportNoPrometheus(const std::string& reason) {
  if (getenv("PALLIMO_DEMANDS_PROMETHEUS") != nullptr) {
    ADD_FAILURE() << reason;
  } else {
    reportUntested(reason);
  }
}

}  // namespace pallimo::end_to_end
