// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/posix_program_launcher.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>
#include <variant>

namespace pallimo::adapters::common {

namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} << 10;

base::Bytes readToTheEnd(int descriptor) {
  base::Bytes bytes;
  std::array<std::uint8_t, kPieceBytes> buffer;
  while (true) {
    pollfd readable = {descriptor, POLLIN, 0};
    poll(&readable, 1, -1);
    const ssize_t got = read(descriptor, buffer.data(), buffer.size());
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) continue;
    if (got <= 0) return bytes;
    bytes.insert(bytes.end(), buffer.data(), buffer.data() + got);
  }
}

}  // namespace

std::optional<base::Bytes> PosixProgramLauncher::run(const std::string& path,
                                                     const std::vector<std::string>& arguments) {
  ports::ChildCommand command;
  command.path = path;
  command.arguments = arguments;
  command.environment = {"PATH=/usr/bin:/bin:/usr/sbin:/sbin"};
  auto started = PosixProcess::start(command);
  if (std::holds_alternative<int>(started)) return std::nullopt;
  auto& running = std::get<PosixProcess::Started>(started);
  base::Bytes output = readToTheEnd(running.output.get());
  base::MutexLock lock(mutex_);
  remains_.push_back(std::move(running.process));
  reapEnded();
  return output;
}

void PosixProgramLauncher::reapEnded() {
  const auto ended = std::remove_if(remains_.begin(), remains_.end(), [](PosixProcess& process) {
    return process.reap().has_value();
  });
  remains_.erase(ended, remains_.end());
}

}  // namespace pallimo::adapters::common
