// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/helper_installation.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "adapters/common/descriptor.h"
#include "adapters/linux/installation/listening_helper.h"
#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::adapters::linux {

namespace {

constexpr mode_t kFolderMode = 0700;
constexpr mode_t kHelperMode = 0755;

using Complaint = std::optional<std::string>;

/// One installation at a time: as long as it is held, what lies under the temporary name is ours.
class FolderLock {
 public:
  explicit FolderLock(int folder)
      : folder_(folder), isHeld_(::flock(folder, LOCK_EX | LOCK_NB) == 0) {}
  ~FolderLock() {
    // Closing the folder alone would leave the lock with a child that has not reached its exec.
    if (isHeld_) ::flock(folder_, LOCK_UN);
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  bool isHeld() const { return isHeld_; }

 private:
  const int folder_;
  const bool isHeld_;
};

std::string because(const std::string& what, const std::string& path) {
  return what + " \"" + path + "\": " + std::strerror(errno);
}

std::string folderOf(const std::string& path) { return path.substr(0, path.find_last_of('/')); }
std::string nameOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

/// As much as fits, or up to the end of the file; -1 when it can't be read.
ssize_t readFully(int file, std::array<char, 65536>& buffer) {
  std::size_t size = 0;
  while (size < buffer.size()) {
    const ssize_t count = ::read(file, buffer.data() + size, buffer.size() - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return -1;
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
  }
  return static_cast<ssize_t>(size);
}

bool writeFully(int file, const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t count = ::write(file, bytes, size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

bool haveSameBytes(int one, int other) {
  std::array<char, 65536> first;
  std::array<char, 65536> second;
  while (true) {
    const ssize_t size = readFully(one, first);
    if (size < 0 || readFully(other, second) != size) return false;
    if (size == 0) return true;
    if (std::memcmp(first.data(), second.data(), static_cast<std::size_t>(size)) != 0) return false;
  }
}

/// The installed file is a plain one with the right mode and the same bytes as `built`.
bool isInstalled(int built, int folder, const std::string& name) {
  const common::Descriptor installed(
      ::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status = {};
  if (!installed || ::fstat(installed.get(), &status) != 0) return false;
  if (!S_ISREG(status.st_mode) || (status.st_mode & 07777) != kHelperMode) return false;
  struct stat builtStatus = {};
  if (::fstat(built, &builtStatus) != 0 || builtStatus.st_size != status.st_size) return false;
  return ::lseek(built, 0, SEEK_SET) == 0 && haveSameBytes(built, installed.get());
}

bool copyBytes(int from, int to) {
  std::array<char, 65536> buffer;
  if (::lseek(from, 0, SEEK_SET) != 0) return false;
  while (true) {
    const ssize_t size = readFully(from, buffer);
    if (size <= 0) return size == 0;
    if (!writeFully(to, buffer.data(), static_cast<std::size_t>(size))) return false;
  }
}

/// Always the same, so that what a killed installation leaves is removed by the next one.
std::string temporaryName(const std::string& name) { return "." + name + ".new"; }

/// Writes the copy beside its place and renames it into it.
bool replace(int built, int folder, const std::string& name) {
  const std::string temporary = temporaryName(name);
  bool isWritten = false;
  {
    const common::Descriptor copy(::openat(
        folder, temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!copy) return false;
    isWritten = copyBytes(built, copy.get()) && ::fchmod(copy.get(), kHelperMode) == 0 &&
                ::fsync(copy.get()) == 0;
  }
  if (isWritten && ::renameat(folder, temporary.c_str(), folder, name.c_str()) == 0) return true;
  const int error = errno;
  ::unlinkat(folder, temporary.c_str(), 0);
  errno = error;
  return false;
}

/// Only the user may enter the folder.
Complaint closeFolder(int folder, const std::string& path) {
  struct stat status = {};
  if (::fstat(folder, &status) != 0) return because("can't read the helper's folder", path);
  if (status.st_uid != ::geteuid()) {
    return "the helper's folder \"" + path + "\" belongs to another user";
  }
  if ((status.st_mode & 07777) != kFolderMode && ::fchmod(folder, kFolderMode) != 0) {
    return because("can't close the helper's folder to others", path);
  }
  return std::nullopt;
}

}  // namespace

HelperInstallation::HelperInstallation(std::string builtHelper, StateFolder folder,
                                       ports::SystemLog& log)
    : builtHelper_(std::move(builtHelper)), folder_(std::move(folder)), log_(log) {}

Complaint HelperInstallation::install() const {
  const std::string target = folder_.installedHelper();
  const std::string folderPath = folderOf(target);
  const std::string name = nameOf(target);
  const common::Descriptor built(::open(builtHelper_.c_str(), O_RDONLY | O_CLOEXEC));
  if (!built) return because("can't read the helper that was built", builtHelper_);
  if (::mkdir(folderPath.c_str(), kFolderMode) != 0 && errno != EEXIST) {
    return because("can't make the helper's folder", folderPath);
  }
  const common::Descriptor folder(
      ::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder) return because("can't open the helper's folder", folderPath);
  if (const Complaint complaint = closeFolder(folder.get(), folderPath)) return complaint;
  const FolderLock lock(folder.get());
  if (!lock.isHeld()) return because("can't lock the helper's folder", folderPath);
  ::unlinkat(folder.get(), temporaryName(name).c_str(), 0);
  const auto putInPlace = [&] {
    return isInstalled(built.get(), folder.get(), name) || replace(built.get(), folder.get(), name);
  };
  if (!putInPlace()) return because("can't install the helper", target);
  // Also one of the same file: it may hang, or be about to remove itself.
  if (!endListeningHelper(folder_.helperLock())) {
    return "can't end the helper that runs for \"" + folder_.path() + "\"";
  }
  // A helper that had been told to uninstall itself may have removed the file as its last act.
  if (!putInPlace()) return because("can't install the helper", target);
  return std::nullopt;
}

bool HelperInstallation::bless(std::string_view label, const ports::AuthorizationToken&) {
  if (label != helper_link::protocol::kMachServiceName) return false;
  const Complaint complaint = install();
  if (complaint) log_.write(*complaint);
  return !complaint;
}

}  // namespace pallimo::adapters::linux
