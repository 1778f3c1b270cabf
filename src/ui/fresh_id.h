// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

#include "ports/random_numbers.h"

namespace pallimo::ui {

/// A new random UUID as text, which tells apart what is built anew each time it is shown. As
/// thread-safe as `random`.
std::string freshId(ports::RandomNumbers& random);

}  // namespace pallimo::ui
