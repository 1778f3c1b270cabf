// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/user_authorization.h"

namespace pallimo::adapters::linux {

namespace {

class Token final : public ports::AuthorizationToken {};

}  // namespace

ports::AuthorizationAttempt UserAuthorization::createAuthorization() {
  return {0, std::make_shared<Token>()};
}

std::int32_t UserAuthorization::copyRight(const ports::AuthorizationToken&, std::string_view,
                                          std::uint32_t) {
  return 0;
}

std::optional<std::int32_t> UserAuthorization::executeWithPrivileges(
    const ports::AuthorizationToken&, const std::string&, const std::vector<std::string>&) {
  return std::nullopt;
}

}  // namespace pallimo::adapters::linux
