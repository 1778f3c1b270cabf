// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/file_store.h"

namespace pallimo::adapters::qt {

/// The user's files, by Qt. Any thread; needs no application object.
///
/// A file gets the permissions that the user's mask leaves, and is on the disk, not only in the
/// system's cache, before it takes its place. A folder in which no file can be made is an error:
/// the target is never written directly. Errors are one line: the file's path and what happened.
/// Paths are UTF-8.
class QtFileStore final : public ports::FileStore {
 public:
  std::optional<std::string> writeAtomically(
      const std::string& path, const std::function<void(const Writer&)>& fill) override;

  /// The one that the user has named (XDG_DESKTOP_DIR), else "Desktop" at home, whether or not it
  /// is there.
  std::optional<std::string> desktopFolder() const override;
};

}  // namespace pallimo::adapters::qt
