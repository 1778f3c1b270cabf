// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/text/file_bytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace pallimo::adapters::simulated {

namespace {

std::string largerThan(std::size_t limit) {
  return "Larger than " + std::to_string(limit) + " bytes";
}

class OpenFile {
 public:
  // Not blocking: a named pipe is refused below instead of being waited for.
  explicit OpenFile(const std::string& path)
      : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ~OpenFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int descriptor() const { return descriptor_; }

  std::string whyUnreadable(std::size_t limit) const {
    if (descriptor_ < 0) return std::strerror(errno);
    struct stat status = {};
    if (fstat(descriptor_, &status) != 0) return std::strerror(errno);
    if (!S_ISREG(status.st_mode)) return "Not a regular file";
    return static_cast<std::uintmax_t>(status.st_size) > limit ? largerThan(limit) : "";
  }

 private:
  int descriptor_;
};

}  // namespace

std::string whyUnreadable(const std::string& path, std::size_t limit) {
  return OpenFile(path).whyUnreadable(limit);
}

std::variant<base::Bytes, FileError> readFileBytes(const std::string& path, std::size_t limit) {
  const OpenFile file(path);
  if (std::string why = file.whyUnreadable(limit); !why.empty()) return FileError{why};
  constexpr std::size_t kPiece = 65536;
  base::Bytes bytes;
  std::size_t size = 0;
  for (;;) {
    bytes.resize(size + kPiece);
    const ssize_t got = read(file.descriptor(), bytes.data() + size, kPiece);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return FileError{std::strerror(errno)};
    size += static_cast<std::size_t>(got);
    if (size > limit) return FileError{largerThan(limit)};
    if (got == 0) break;
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace pallimo::adapters::simulated
