// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <vector>

namespace pallimo::base {

/// Raw bytes, for example one `powermetrics` document.
using Bytes = std::vector<std::uint8_t>;

}  // namespace pallimo::base
