// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace pallimo::end_to_end {

/// Long enough for any of it on a loaded machine; whatever takes longer has failed.
inline constexpr std::chrono::milliseconds kGenerous{60'000};

inline std::string textOf(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// A process of whatever parentage, whose end can be waited for.
class WatchedProcess {
 public:
  explicit WatchedProcess(pid_t number)
      : number_(number), descriptor_(static_cast<int>(syscall(SYS_pidfd_open, number, 0))) {}
  ~WatchedProcess() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  WatchedProcess(WatchedProcess&& other) noexcept
      : number_(other.number_), descriptor_(std::exchange(other.descriptor_, -1)) {}
  WatchedProcess& operator=(WatchedProcess&&) = delete;

  pid_t number() const { return number_; }
  void send(int signal) const { syscall(SYS_pidfd_send_signal, descriptor_, signal, nullptr, 0); }
  /// False when it is still there after a generous time. One that was gone at first counts as gone.
  bool isGoneInTime(std::chrono::milliseconds limit = kGenerous) const {
    if (descriptor_ < 0) return true;
    pollfd waited = {descriptor_, POLLIN, 0};
    return poll(&waited, 1, static_cast<int>(limit.count())) == 1;
  }

 private:
  const pid_t number_;
  int descriptor_;
};

/// The number of the process that started it; 0 when it is gone.
inline pid_t parentOf(pid_t number) {
  // "1234 (name) S 1230 ...": the name may hold anything but ends with the last parenthesis.
  const std::string text = textOf("/proc/" + std::to_string(number) + "/stat");
  const std::size_t end = text.rfind(')');
  return end == std::string::npos ? 0 : std::stoi(text.substr(end + 4));
}

inline std::set<pid_t> processNumbers() {
  std::set<pid_t> numbers;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename();
    if (name.find_first_not_of("0123456789") == std::string::npos) numbers.insert(std::stoi(name));
  }
  return numbers;
}

/// The processes that run the program at `path`, also when the file was replaced meanwhile. A child
/// that has not yet become another program is not counted.
inline std::vector<WatchedProcess> processesOf(const std::filesystem::path& path) {
  std::set<pid_t> running;
  for (const pid_t number : processNumbers()) {
    std::error_code gone;
    const std::string executable =
        std::filesystem::read_symlink("/proc/" + std::to_string(number) + "/exe", gone);
    if (!gone && executable.rfind(path.string(), 0) == 0) running.insert(number);
  }
  std::vector<WatchedProcess> found;
  for (const pid_t number : running) {
    if (running.count(parentOf(number)) == 0) found.emplace_back(number);
  }
  return found;
}

/// One run of the app. Its standard output is a pipe that the test reads, its standard error a
/// file.
class AppProcess {
 public:
  using Texts = std::vector<std::string>;

  /// The exit status when the program can't be started under its conditions.
  static constexpr int kNotStarted = 127;

  /// What the system grants the run.
  struct Conditions {
    std::optional<uid_t> user;           ///< only root may choose another
    std::optional<rlim_t> longestFile;   ///< bytes; a longer one can't be written
    std::optional<std::string> program;  ///< another build of the app
  };

  /// `environment` entries ("NAME=value") go before those of the test's own.
  AppProcess(const Texts& arguments, std::filesystem::path errorFile, const Texts& environment = {},
             std::optional<int> outputDescriptor = std::nullopt, const Conditions& conditions = {})
      : errorFile_(std::move(errorFile)) {
    std::array<int, 2> ends = {-1, -1};
    if (!outputDescriptor && pipe2(ends.data(), O_CLOEXEC) != 0) return;
    output_ = ends[0];
    const int errors = open(errorFile_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const std::string program = conditions.program.value_or(PALLIMO_BIN_DIR "/pallimo");
    Texts command = {program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    Texts entries = environment;
    for (char** entry = environ; *entry != nullptr; ++entry) entries.emplace_back(*entry);
    const auto commandPointers = pointersTo(command);
    const auto entryPointers = pointersTo(entries);
    number_ = fork();
    if (number_ == 0) {
      dup2(outputDescriptor.value_or(ends[1]), 1);
      dup2(errors, 2);
      if (isGranted(conditions)) {
        execve(program.c_str(), commandPointers.data(), entryPointers.data());
      }
      _exit(kNotStarted);
    }
    close(errors);
    if (ends[1] >= 0) close(ends[1]);
  }
  /// A run that is still there has failed its test; it is ended.
  ~AppProcess() {
    if (!status_) {
      kill(number_, SIGKILL);
      waitpid(number_, nullptr, 0);
    }
    closeOutput();
  }
  AppProcess(const AppProcess&) = delete;
  AppProcess& operator=(const AppProcess&) = delete;

  void send(int signal) const { kill(number_, signal); }

  /// What it is doing at the moment, for somebody who wonders why it does not do something else:
  /// the state of each of its threads and where in the kernel it waits, and what it complained of.
  std::string account() const {
    std::string text = "process " + std::to_string(number_) + ":\n";
    std::error_code gone;
    for (const auto& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(number_) + "/task", gone)) {
      const std::string stat = textOf(thread.path() / "stat");
      text += stat.substr(0, stat.find(')') + 3) + " " + textOf(thread.path() / "wchan") + "\n";
    }
    return text + textOf(errorFile_);
  }

  /// The next line of standard output; nothing at its end, or when none comes in time.
  std::optional<std::string> readLine() {
    for (std::size_t end = 0; (end = unread_.find('\n')) == std::string::npos;) {
      if (!readMore()) return std::nullopt;
    }
    const std::size_t end = unread_.find('\n');
    std::string line = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    return line;
  }

  Texts readLines(std::size_t count) {
    Texts lines;
    while (lines.size() < count) {
      auto line = readLine();
      if (!line) break;
      lines.push_back(*std::move(line));
    }
    return lines;
  }

  /// Everything up to the end of standard output.
  std::string readAll() {
    while (readMore()) {
    }
    return std::exchange(unread_, {});
  }

  void closeOutput() {
    if (output_ >= 0) close(std::exchange(output_, -1));
  }

  pid_t number() const { return number_; }

  /// The exit status; minus the signal's number for a run that a signal ended, nothing for one that
  /// did not end in time.
  std::optional<int> exitStatus() {
    if (status_) return status_;
    if (!WatchedProcess(number_).isGoneInTime()) return std::nullopt;
    int status = 0;
    waitpid(number_, &status, 0);
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return status_;
  }

  std::string errorText() const { return textOf(errorFile_); }

 private:
  /// In the child. Writing beyond a limit shall be an error rather than a signal.
  static bool isGranted(const Conditions& conditions) {
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);  // a run that stops the program is no reason to keep its memory
    if (conditions.longestFile) {
      const rlimit limit = {*conditions.longestFile, *conditions.longestFile};
      signal(SIGXFSZ, SIG_IGN);
      if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    }
    if (!conditions.user) return true;
    const uid_t user = *conditions.user;
    return setgroups(0, nullptr) == 0 && setresgid(user, user, user) == 0 &&
           setresuid(user, user, user) == 0;
  }

  static std::vector<char*> pointersTo(Texts& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
  }

  bool readMore() {
    pollfd waited = {output_, POLLIN, 0};
    if (poll(&waited, 1, static_cast<int>(kGenerous.count())) != 1) return false;
    std::array<char, 4096> buffer;
    const ssize_t size = read(output_, buffer.data(), buffer.size());
    if (size <= 0) return false;
    unread_.append(buffer.data(), static_cast<std::size_t>(size));
    return true;
  }

  const std::filesystem::path errorFile_;
  pid_t number_ = -1;
  int output_ = -1;
  std::string unread_;
  std::optional<int> status_;
};

}  // namespace pallimo::end_to_end
