// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/linux/state_folder_choice.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace pallimo::app::linux {

namespace {

std::string environmentEntry(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

/// Entries that are not absolute do not count, as the base-directory rules say.
bool isAbsolute(const std::string& path) { return !path.empty() && path.front() == '/'; }

}  // namespace

std::variant<std::string, StartError> stateFolderPath(const Options& options) {
  if (options.stateDir) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(*options.stateDir, error);
    if (error) {
      return StartError{"can't find the state folder \"" + *options.stateDir +
                        "\": " + error.message()};
    }
    const std::string normal = path.lexically_normal();
    return normal.size() > 1 && normal.back() == '/' ? normal.substr(0, normal.size() - 1) : normal;
  }
  if (const std::string state = environmentEntry("XDG_STATE_HOME"); isAbsolute(state)) {
    return state + "/pallimo";
  }
  if (const std::string home = environmentEntry("HOME"); isAbsolute(home)) {
    return home + "/.local/state/pallimo";
  }
  return StartError{"there is no home folder to keep the state in; name a folder with --state-dir"};
}

}  // namespace pallimo::app::linux
