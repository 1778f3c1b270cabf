// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>

namespace pallimo::base {

/// The bytes as UTF-8. What is none is replaced by U+FFFD, one for every byte or begun sequence
/// that could not go on, as Unicode recommends (its "maximal subparts"). Valid text, NUL included,
/// is returned as it is.
std::string repairedUtf8(std::string_view bytes);

}  // namespace pallimo::base
