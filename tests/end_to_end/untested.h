// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <iostream>
#include <string>

namespace pallimo::end_to_end {

/// For a test that this machine, or this user, does not allow: says so on the output and in the
/// report, so that a pass without a check is not taken for one with it. The test returns then.
inline void reportUntested(const std::string& reason) {
  std::cout << reason << ", nothing was tested.\n";
  ::testing::Test::RecordProperty("untested", reason);
}

}  // namespace pallimo::end_to_end
