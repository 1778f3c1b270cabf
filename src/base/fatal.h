// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::base {

/// Stops the program: one line with the message on standard error, then an abort. For the few
/// situations that have no way back. Any thread.
[[noreturn]] void fatal(std::string_view message);

}  // namespace pallimo::base
