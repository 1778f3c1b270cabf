// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>

namespace pallimo::base {

/// The bytes as UTF-8, each longest sequence that is none replaced by U+FFFD. Valid text is
/// returned as it is.
std::string repairedUtf8(std::string_view bytes);

}  // namespace pallimo::base
