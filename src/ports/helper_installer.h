// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

#include "ports/authorization_services.h"

namespace pallimo::ports {

/// Installs the helper that the app embeds as a job of the system. Main thread.
class HelperInstaller {
 public:
  virtual ~HelperInstaller() = default;

  /// Installs the embedded helper under `label` in the system's domain, with an administrator's
  /// consent; whatever was installed under it is replaced. False when it could not, the
  /// administrator's refusal included.
  virtual bool bless(std::string_view label, const AuthorizationToken& token) = 0;
};

}  // namespace pallimo::ports
