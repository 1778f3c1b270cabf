// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace pallimo::adapters::linux {

/// The longest path of a socket, in bytes. The system would take 107; libdbus takes what POSIX
/// grants everywhere.
inline constexpr std::size_t kLongestSocketPath = 99;

/// The paths of a state folder: everything of one Pallimo that is kept on disk, so that two runs
/// with different folders never meet. Values only; nothing is opened or made.
class StateFolder {
 public:
  /// `path` is absolute.
  explicit StateFolder(std::string path);

  const std::string& path() const { return path_; }
  std::string settingsFile() const;     ///< the user's settings
  std::string simulationFile() const;   ///< what is simulated; read by helper and stand-in
  std::string installedHelper() const;  ///< where installing the helper puts it
  std::string helperSocket() const;     ///< where the helper listens
  std::string helperLock() const;       ///< held by the helper that listens

  /// The state folder that an installed helper at `helperPath` belongs to.
  static StateFolder ofInstalledHelper(const std::string& helperPath);

 private:
  std::string path_;
};

/// Makes the folder with mode 0700 if it is not there and checks that it is this user's and no
/// link, and that its socket's path is not too long. One that is open to other users is closed to
/// them when it holds nothing but our files, and refused otherwise. Returns what is wrong, in one
/// line fit for a user, or nothing.
std::optional<std::string> prepareStateFolder(const StateFolder& folder);

/// Checks that a helper at `helperPath` is an installed one, and that the folder that it is
/// installed in is this user's and closed to others; changes nothing.
/// Returns what is wrong, in one line, or nothing.
std::optional<std::string> checkInstalledHelper(const std::string& helperPath);

}  // namespace pallimo::adapters::linux
