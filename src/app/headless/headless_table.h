// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <string>

#include "logging/log_row.h"

namespace pallimo::app {

// The table that a headless run prints for people: power (W), frequencies (MHz), temperatures (°C;
// "min", "avg" and "max" are the CPU's) and utilisation (%). Columns have fixed widths, 123 places
// in all; figures stand at the right and have a fixed number of decimals, so that nothing dances
// from line to line. Not a number is written nan. ASCII only. Pure.

/// Two lines, each with its line end: the groups with their units, the columns' names.
std::string tableHeader();

/// The row's line with its line end; elapsed time counts from `first`.
std::string tableLine(const logging::LogRow& row, std::chrono::system_clock::time_point first);

}  // namespace pallimo::app
