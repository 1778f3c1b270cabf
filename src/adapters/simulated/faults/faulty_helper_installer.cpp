// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/faults/faulty_helper_installer.h"

#include <utility>

namespace pallimo::adapters::simulated {

FaultyHelperInstaller::FaultyHelperInstaller(ports::HelperInstaller& inner, Faults faults)
    : inner_(inner), faults_(std::move(faults)) {}

bool FaultyHelperInstaller::bless(std::string_view label, const ports::AuthorizationToken& token) {
  return !faults_.blessRefused && inner_.bless(label, token);
}

}  // namespace pallimo::adapters::simulated
