// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/fatal.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace pallimo::base {

void fatal(std::string_view message) {
  // One write, so that the line of another thread does not land in the middle of this one.
  std::string line(message);
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
  std::abort();
}

}  // namespace pallimo::base
