// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/bytes.h"

namespace pallimo::base {

/// The bytes as UTF-8. What is none is replaced by U+FFFD, one for every byte or begun sequence
/// that could not go on, as Unicode recommends (its "maximal subparts"). Valid text, NUL included,
/// is returned as it is.
std::string repairedUtf8(std::string_view bytes);

/// The text of a kernel variable: the bytes up to the first NUL, repaired; nothing without a NUL.
std::optional<std::string> textBeforeNul(const Bytes& bytes);

}  // namespace pallimo::base
