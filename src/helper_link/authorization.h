// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "ports/authorization_services.h"

namespace pallimo::helper_link {

/// Runs command lines with administrator rights. The helper's installation does without it.
/// Main thread; blocks while the administrator is asked.
class Authorization {
 public:
  /// Why a command was not run.
  struct Error {
    enum class Kind {
      creationFailed,      ///< no authorisation could be created
      copyingRightFailed,  ///< the administrator's right was not granted
      executingFailed,     ///< the program could not be started
    };
    Kind kind = Kind::creationFailed;
    std::int32_t status = 0;  ///< the system's
    bool operator==(const Error&) const = default;
  };

  /// `services` outlives the object.
  explicit Authorization(ports::AuthorizationServices& services) : services_(services) {}

  /// Empty until the first command; kept afterwards.
  const std::shared_ptr<ports::AuthorizationToken>& authorizationRef() const {
    return authorizationRef_;
  }

  /// Runs a command line, which is split at single spaces: the tool's path, then its arguments (two
  /// spaces make an empty one). Nothing on success.
  std::optional<Error> executeWithPrivileges(const std::string& commandLine);

 private:
  ports::AuthorizationServices& services_;
  std::shared_ptr<ports::AuthorizationToken> authorizationRef_;
};

}  // namespace pallimo::helper_link
