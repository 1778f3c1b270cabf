// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

#include "privacy/text_span.h"

namespace pallimo::privacy {

/// Paths into somebody's home, up to the text's end: they may hold spaces. With slashes of either
/// kind, escaped or not, and with "~". Pure.
TextSpans spansOfHomes(std::string_view text);

}  // namespace pallimo::privacy
