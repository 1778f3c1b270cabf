// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "tools/powermetrics/process_surroundings.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace pallimo::tools::powermetrics {

namespace {

std::optional<std::string> environmentEntry(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

bool waitWatchingOutput(const std::function<double()>& steady,
                        std::chrono::duration<double> duration) {
  const double end = steady() + duration.count();
  constexpr double kLongestPoll = 3600;  // poll() counts milliseconds in an int
  for (;;) {
    const double left = end - steady();
    if (left <= 0) return true;
    // No event is asked for: errors and hang-ups are reported always.
    struct pollfd output = {.fd = STDOUT_FILENO, .events = 0, .revents = 0};
    const int milliseconds = static_cast<int>(std::ceil(std::min(left, kLongestPoll) * 1000));
    const int ready = poll(&output, 1, milliseconds);
    if (ready > 0 || (ready < 0 && errno != EINTR)) return false;
  }
}

bool writeAll(int descriptor, const std::uint8_t* data, std::size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(descriptor, data, size);
    if (written < 0 && errno != EINTR) return false;
    if (written <= 0) continue;
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

ToolSurroundings processSurroundings(const Clocks& clocks) {
  return {.environment = environmentEntry,
          .now = clocks.wall,
          .wait =
              [steady = clocks.steady](std::chrono::duration<double> duration) {
                return waitWatchingOutput(steady, duration);
              },
          .write =
              [](const base::Bytes& bytes) {
                return writeAll(STDOUT_FILENO, bytes.data(), bytes.size());
              },
          .writeError =
              [](std::string_view line) {
                const std::string text = std::string(line) + "\n";
                const base::Bytes bytes(text.begin(), text.end());
                writeAll(STDERR_FILENO, bytes.data(), bytes.size());
              }};
}

}  // namespace pallimo::tools::powermetrics
