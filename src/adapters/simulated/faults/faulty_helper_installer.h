// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/simulated/faults/faults.h"
#include "ports/helper_installer.h"

namespace pallimo::adapters::simulated {

/// Another's installations, unless it is planned that the administrator declines. Main thread.
class FaultyHelperInstaller final : public ports::HelperInstaller {
 public:
  /// `inner` outlives the object.
  FaultyHelperInstaller(ports::HelperInstaller& inner, Faults faults);

  /// False, without touching anything, when the refusal is planned.
  bool bless(std::string_view label, const ports::AuthorizationToken& token) override;

 private:
  ports::HelperInstaller& inner_;
  const Faults faults_;
};

}  // namespace pallimo::adapters::simulated
