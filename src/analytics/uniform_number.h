// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

#include "ports/random_numbers.h"

namespace pallimo::analytics {

/// One of the numbers from 0 to `last`, each as likely, `last` below 2^64 - 1. Takes one random
/// number, and another one as long as it met the few that the range does not divide evenly, a
/// hundred in all.
std::uint64_t uniformNumber(ports::RandomNumbers& random, std::uint64_t last);

}  // namespace pallimo::analytics
