// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/posix_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "adapters/common/process_calls.h"

namespace pallimo::adapters::common {

namespace {

constexpr const char* kNowhere = "/dev/null";

/// argv or envp: the texts must outlive it.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (auto& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  /// The pipe first: its number may be one of the other two. Adds to the flags of the attributes.
  /// Returns an errno value.
  int prepare(int output, short& flags) {
    int error = posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    if (error == 0) error = addOpen(STDIN_FILENO, O_RDONLY);
    if (error == 0) error = addOpen(STDERR_FILENO, O_WRONLY);
    if (error == 0) error = closeOtherDescriptors(actions_, flags);
    return error;
  }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  int addOpen(int number, int mode) {
    return posix_spawn_file_actions_addopen(&actions_, number, kNowhere, mode, 0);
  }

  posix_spawn_file_actions_t actions_;
};

class Attributes {
 public:
  Attributes() { posix_spawnattr_init(&attributes_); }
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  /// Returns an errno value.
  int prepare(short flags) {
    sigset_t none;
    sigemptyset(&none);
    sigset_t all;
    sigfillset(&all);
    int error = posix_spawnattr_setpgroup(&attributes_, 0);
    if (error == 0) error = posix_spawnattr_setsigmask(&attributes_, &none);
    if (error == 0) error = posix_spawnattr_setsigdefault(&attributes_, &all);
    if (error == 0) error = posix_spawnattr_setflags(&attributes_, flags);
    return error;
  }
  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

std::variant<pid_t, int> spawn(const ports::ChildCommand& command, int output) {
  FileActions actions;
  Attributes attributes;
  short flags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
  int error = actions.prepare(output, flags);
  if (error == 0) error = attributes.prepare(flags);
  if (error != 0) return std::variant<pid_t, int>(std::in_place_index<1>, error);
  std::vector<std::string> arguments = {command.path};
  arguments.insert(arguments.end(), command.arguments.begin(), command.arguments.end());
  std::vector<std::string> environment = command.environment;
  pid_t number = 0;
  error = posix_spawn(&number, command.path.c_str(), actions.get(), attributes.get(),
                      pointersTo(arguments).data(), pointersTo(environment).data());
  if (error != 0) return std::variant<pid_t, int>(std::in_place_index<1>, error);
  return std::variant<pid_t, int>(std::in_place_index<0>, number);
}

}  // namespace

std::variant<PosixProcess::Started, int> PosixProcess::start(const ports::ChildCommand& command) {
  Descriptor reader;
  Descriptor writer;
  if (const int error = makePipe(reader, writer); error != 0) return error;
  if (fcntl(reader.get(), F_SETFL, O_NONBLOCK) != 0) return errno;
  const auto spawned = spawn(command, writer.get());
  if (spawned.index() == 1) return std::get<1>(spawned);
  const pid_t number = std::get<0>(spawned);
  Descriptor exit;
  const int error = openExitDescriptor(number, exit);
  if (error == 0) return Started{PosixProcess(number, std::move(exit)), std::move(reader)};
  // Its end could not be noticed, so it may not run.
  kill(number, SIGKILL);
  waitpid(number, nullptr, 0);
  return error;
}

void PosixProcess::killGroup() const {
  if (number_ <= 0) return;
  kill(-number_, SIGKILL);
  // It may have moved into another group.
  kill(number_, SIGKILL);
}

std::optional<int> PosixProcess::reap() {
  constexpr int kNoStatus = -1;
  if (number_ <= 0) return kNoStatus;
  int status = kNoStatus;
  if (waitpid(number_, &status, WNOHANG) == 0) return std::nullopt;
  number_ = 0;
  return status;
}

}  // namespace pallimo::adapters::common
