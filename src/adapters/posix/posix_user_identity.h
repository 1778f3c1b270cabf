// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/user_identity.h"

namespace pallimo::adapters::posix {

/// The environment, the list of users and the host's name, asked anew each time.
class PosixUserIdentity final : public ports::UserIdentity {
 public:
  std::string environment(const char* name) const override;
  std::optional<Account> account() const override;
  std::optional<Account> accountOf(const std::string& name) const override;
  std::string hostName() const override;
};

}  // namespace pallimo::adapters::posix
