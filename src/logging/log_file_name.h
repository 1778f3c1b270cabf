// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <string>

namespace pallimo::logging {

/// The name, without its extension, of the file of a log that is started at `start`, in the
/// process's time zone: "PwrData 2024-03-05 at 14.02.33".
///
/// The year is the one to which the day's week belongs (date format "YYYY"), so the last days of
/// December may carry the next one. Any thread.
std::string logFileName(std::chrono::system_clock::time_point start);

}  // namespace pallimo::logging
