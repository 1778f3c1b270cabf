// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/stream_console.h"

#include <unistd.h>

#include <cerrno>
#include <string>

namespace pallimo::adapters::common {

void StreamConsole::writeLine(std::string_view line) {
  const std::string text = std::string(line) + '\n';
  while (::write(descriptor_, text.data(), text.size()) < 0 && errno == EINTR) {
  }
}

}  // namespace pallimo::adapters::common
