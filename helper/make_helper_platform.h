// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <string>

#include "helper/run_helper.h"

namespace pallimo::helper {

/// What is fixed when the helper is built.
struct BuildFacts {
  std::string version;           ///< of the helper
  std::string powermetricsPath;  ///< absolute
};

/// The platform of the system that the helper is built for; nothing when the process can't be
/// prepared. Changes the process (signals, file mode mask): called once, by main.
std::unique_ptr<HelperPlatform> makeHelperPlatform(const BuildFacts& facts);

}  // namespace pallimo::helper
