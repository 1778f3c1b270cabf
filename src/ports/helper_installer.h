// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace pallimo::ports {

/// The administrator's consent, as the system hands it out. Opaque; never freed by the app.
class AuthorizationToken {
 public:
  virtual ~AuthorizationToken() = default;
};

/// An attempt to obtain the administrator's consent.
struct AuthorizationAttempt {
  std::int32_t status = 0;                    ///< 0 on success
  std::shared_ptr<AuthorizationToken> token;  ///< may be absent even when the status is 0
};

/// Installs the embedded helper as a system service. Main thread.
class HelperInstaller {
 public:
  virtual ~HelperInstaller() = default;

  /// An authorisation without rights, environment or flags.
  virtual AuthorizationAttempt createAuthorization() = 0;
  /// Installs the helper under `label`; asks the administrator. False when it could not.
  virtual bool bless(std::string_view label, const AuthorizationToken& token) = 0;
};

}  // namespace pallimo::ports
