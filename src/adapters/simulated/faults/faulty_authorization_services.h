// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/simulated/faults/faults.h"
#include "ports/authorization_services.h"

namespace pallimo::adapters::simulated {

/// Another's authorisations, unless it is planned that none can be had. Main thread.
class FaultyAuthorizationServices final : public ports::AuthorizationServices {
 public:
  /// `inner` outlives the object.
  FaultyAuthorizationServices(ports::AuthorizationServices& inner, Faults faults);

  /// The planned status without a token; without a plan whatever `inner` gives.
  ports::AuthorizationAttempt createAuthorization() override;
  std::int32_t copyRight(const ports::AuthorizationToken& token, std::string_view right,
                         std::uint32_t flags) override;
  std::optional<std::int32_t> executeWithPrivileges(
      const ports::AuthorizationToken& token, const std::string& path,
      const std::vector<std::string>& arguments) override;

 private:
  ports::AuthorizationServices& inner_;
  const Faults faults_;
};

}  // namespace pallimo::adapters::simulated
