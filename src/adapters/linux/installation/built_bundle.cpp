// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/built_bundle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>

#include "adapters/common/descriptor.h"
#include "base/bytes.h"

namespace pallimo::adapters::linux {

namespace {

constexpr std::size_t kLongestList = 65536;

std::optional<base::Bytes> readList(const std::string& path) {
  // Without blocking, should a pipe have been put in its place.
  const common::Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status = {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  base::Bytes bytes(kLongestList + 1);
  std::size_t size = 0;
  while (size < bytes.size()) {
    const ssize_t count = ::read(file.get(), bytes.data() + size, bytes.size() - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
  }
  if (size > kLongestList) return std::nullopt;
  bytes.resize(size);
  return bytes;
}

}  // namespace

BuiltBundle::BuiltBundle(std::string root, const ports::PropertyListReader& reader)
    : root_(std::move(root)), reader_(reader) {}

std::optional<base::PropertyList> BuiltBundle::infoDictionary(std::string_view path) const {
  const std::string inside = root_ + "/" + std::string(path);
  if (::access(inside.c_str(), R_OK) != 0) return std::nullopt;
  const auto bytes = readList(path.empty() ? inside + "Contents/Info.plist" : inside + ".plist");
  if (!bytes) return std::nullopt;
  auto list = reader_.read(*bytes);
  return list && list->dictionary() != nullptr ? std::move(list) : std::nullopt;
}

}  // namespace pallimo::adapters::linux
