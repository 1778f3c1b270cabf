// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/state_folder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::adapters::linux {

namespace {

constexpr mode_t kOwnerOnly = 0700;
constexpr mode_t kOthers = 0077;
constexpr const char* kToolsFolder = "PrivilegedHelperTools";

std::string parentOf(const std::string& path) {
  const auto slash = path.find_last_of('/');
  return slash == std::string::npos || slash == 0 ? "/" : path.substr(0, slash);
}

std::string systemError(const std::string& what, const std::string& path) {
  return what + " \"" + path + "\": " + std::strerror(errno);
}

/// mkdir -p; only folders that are missing are made, all with mode 0700.
bool makeFolders(const std::string& path) {
  if (mkdir(path.c_str(), kOwnerOnly) == 0 || errno == EEXIST) return true;
  if (errno != ENOENT || path == "/") return false;
  return makeFolders(parentOf(path)) && (mkdir(path.c_str(), kOwnerOnly) == 0 || errno == EEXIST);
}

std::optional<std::string> checkSocketPath(const StateFolder& folder) {
  const std::string path = folder.helperSocket();
  if (path.size() <= kLongestSocketPath) return std::nullopt;
  return "the state folder's path is too long: \"" + path + "\" has " +
         std::to_string(path.size()) + " bytes, a socket's path at most " +
         std::to_string(kLongestSocketPath);
}

std::optional<std::string> readOwnFolder(const std::string& path, struct stat& status) {
  if (lstat(path.c_str(), &status) != 0) return systemError("can't read the state folder", path);
  if (S_ISLNK(status.st_mode)) return "the state folder \"" + path + "\" is a symbolic link";
  if (!S_ISDIR(status.st_mode)) return "the state folder \"" + path + "\" is not a folder";
  if (status.st_uid != geteuid()) {
    return "the state folder \"" + path + "\" belongs to another user";
  }
  return std::nullopt;
}

/// Whether everything in the folder is ours; an empty folder is.
bool holdsNothingElse(const StateFolder& folder) {
  std::set<std::string> ours = {folder.path() + "/" + kToolsFolder};
  for (const auto& file : {folder.settingsFile(), folder.simulationFile(), folder.helperSocket(),
                           folder.helperLock()}) {
    ours.insert(file);
  }
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path(), failure)) {
    if (ours.count(entry.path().string()) == 0) return false;
  }
  return !failure;
}

}  // namespace

StateFolder::StateFolder(std::string path) : path_(std::move(path)) {}

std::string StateFolder::settingsFile() const { return path_ + "/settings.ini"; }
std::string StateFolder::simulationFile() const { return path_ + "/simulation.json"; }
std::string StateFolder::installedHelper() const {
  return path_ + "/" + kToolsFolder + "/" + std::string(helper_link::protocol::kMachServiceName);
}
std::string StateFolder::helperSocket() const { return path_ + "/helper.socket"; }
std::string StateFolder::helperLock() const { return path_ + "/helper.lock"; }

StateFolder StateFolder::ofInstalledHelper(const std::string& helperPath) {
  return StateFolder(parentOf(parentOf(helperPath)));
}

std::optional<std::string> prepareStateFolder(const StateFolder& folder) {
  if (auto error = checkSocketPath(folder)) return error;
  if (!makeFolders(folder.path())) return systemError("can't make the state folder", folder.path());
  struct stat status = {};
  if (auto error = readOwnFolder(folder.path(), status)) return error;
  if ((status.st_mode & kOthers) == 0) return std::nullopt;
  // Whoever may enter the folder could connect to the helper. But a folder that is used for
  // something else is not closed behind its other users' backs: it might be /tmp.
  if ((status.st_mode & S_ISVTX) != 0 || !holdsNothingElse(folder)) {
    return "the state folder \"" + folder.path() +
           "\" is open to other users and holds other files; choose another one";
  }
  if (chmod(folder.path().c_str(), kOwnerOnly) != 0) {
    return systemError("can't close the state folder to others", folder.path());
  }
  return std::nullopt;
}

std::optional<std::string> checkInstalledHelper(const std::string& helperPath) {
  const StateFolder folder = StateFolder::ofInstalledHelper(helperPath);
  if (folder.installedHelper() != helperPath) {
    return "\"" + helperPath + "\" is not where a helper is installed";
  }
  if (auto error = checkSocketPath(folder)) return error;
  struct stat status = {};
  if (auto error = readOwnFolder(folder.path(), status)) return error;
  if ((status.st_mode & kOthers) != 0) {
    return "the state folder \"" + folder.path() + "\" is open to other users";
  }
  return std::nullopt;
}

}  // namespace pallimo::adapters::linux
