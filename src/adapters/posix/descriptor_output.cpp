// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/posix/descriptor_output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace pallimo::adapters::posix {

namespace {

/// A descriptor that somebody else made non-blocking is waited for like any other.
void waitUntilWritable(int descriptor) {
  pollfd waited = {descriptor, POLLOUT, 0};
  poll(&waited, 1, -1);
}

}  // namespace

ports::StandardOutput::State DescriptorOutput::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor_, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      waitUntilWritable(descriptor_);
    } else if (errno != EINTR) {
      error_ = errno;
      return error_ == EPIPE ? State::closed : State::failed;
    }
  }
  return State::open;
}

std::string DescriptorOutput::failure() const { return std::strerror(error_); }

}  // namespace pallimo::adapters::posix
