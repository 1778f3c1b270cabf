// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/faults/faulty_authorization_services.h"

#include <utility>

namespace pallimo::adapters::simulated {

FaultyAuthorizationServices::FaultyAuthorizationServices(ports::AuthorizationServices& inner,
                                                         Faults faults)
    : inner_(inner), faults_(std::move(faults)) {}

ports::AuthorizationAttempt FaultyAuthorizationServices::createAuthorization() {
  if (faults_.authorizationStatus) return {*faults_.authorizationStatus, nullptr};
  return inner_.createAuthorization();
}

std::int32_t FaultyAuthorizationServices::copyRight(const ports::AuthorizationToken& token,
                                                    std::string_view right, std::uint32_t flags) {
  return inner_.copyRight(token, right, flags);
}

std::optional<std::int32_t> FaultyAuthorizationServices::executeWithPrivileges(
    const ports::AuthorizationToken& token, const std::string& path,
    const std::vector<std::string>& arguments) {
  return inner_.executeWithPrivileges(token, path, arguments);
}

}  // namespace pallimo::adapters::simulated
