// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/authorization_services.h"

namespace pallimo::adapters::linux {

/// Authorisations where nobody has to be asked: off macOS the helper is the user's own and lies in
/// the user's own folder. Every one is granted, and none gives more rights than the user has.
/// Stateless; main thread.
class UserAuthorization final : public ports::AuthorizationServices {
 public:
  /// Status 0 and a token.
  ports::AuthorizationAttempt createAuthorization() override;
  /// Status 0.
  std::int32_t copyRight(const ports::AuthorizationToken& token, std::string_view right,
                         std::uint32_t flags) override;
  /// Nothing: this system has no such function.
  std::optional<std::int32_t> executeWithPrivileges(
      const ports::AuthorizationToken& token, const std::string& path,
      const std::vector<std::string>& arguments) override;
};

}  // namespace pallimo::adapters::linux
