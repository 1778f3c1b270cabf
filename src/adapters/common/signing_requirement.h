// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::adapters::common {

/// Whether the system can read the code-signing requirement: a connection that is given another
/// ends the program. Defined where the system has such requirements. Any thread.
bool isSigningRequirement(std::string_view text);

}  // namespace pallimo::adapters::common
