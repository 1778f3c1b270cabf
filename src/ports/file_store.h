// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace pallimo::ports {

/// The user's files. Any thread.
class FileStore {
 public:
  /// Takes the file's next piece.
  using Writer = std::function<void(std::string_view piece)>;

  virtual ~FileStore() = default;

  /// Writes what `fill` hands to its writer, piece by piece, as the file at the absolute `path`:
  /// into a temporary file of the same folder, which takes the place of a file of that name in one
  /// step when all of it is written. Nothing when it stands there, else the error's description;
  /// what stood there is then untouched and no temporary file is left.
  virtual std::optional<std::string> writeAtomically(
      const std::string& path, const std::function<void(const Writer&)>& fill) = 0;

  /// The user's desktop folder, absolute, without a slash at its end; nothing when there is none.
  virtual std::optional<std::string> desktopFolder() const = 0;
};

}  // namespace pallimo::ports
