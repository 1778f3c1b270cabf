// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pallimo::ports {

/// An administrator's consent, as the system keeps it. Nobody looks inside. Destroying the token
/// does not free what the system keeps: the app never gives a consent back.
class AuthorizationToken {
 public:
  virtual ~AuthorizationToken() = default;
};

/// What asking for an authorisation gave.
struct AuthorizationAttempt {
  std::int32_t status = 0;                    ///< 0 on success
  std::shared_ptr<AuthorizationToken> token;  ///< may be absent even when the status is 0
};

/// The system's authorisations. Main thread; the calls that ask the administrator block.
/// Statuses are the system's: 0 is success, -60005 "denied", -60006 "canceled".
class AuthorizationServices {
 public:
  virtual ~AuthorizationServices() = default;

  /// An authorisation without rights and environment, with flags 0.
  virtual AuthorizationAttempt createAuthorization() = 0;
  /// Extends the authorisation by one right, asking the administrator as the flags say.
  virtual std::int32_t copyRight(const AuthorizationToken& token, std::string_view right,
                                 std::uint32_t flags) = 0;
  /// Runs the program with administrator rights, with default options. Nothing when this system has
  /// no such function, which is looked up by name when it is wanted.
  virtual std::optional<std::int32_t> executeWithPrivileges(
      const AuthorizationToken& token, const std::string& path,
      const std::vector<std::string>& arguments) = 0;
};

}  // namespace pallimo::ports
