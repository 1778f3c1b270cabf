// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>

#include "logging/log_rows.h"
#include "ports/file_store.h"

namespace pallimo::logging {

/// Hands the text of a log's file to `writer`, in pieces of about 64 KiB, so that the text of a day
/// (11 MB) never stands in memory: the header, then one line a row, a line feed after each. The
/// lines are those that a headless run prints. Elapsed times count from `first`, the time of the
/// first row.
void writeLogFileText(const LogRows& rows, std::chrono::system_clock::time_point first,
                      const ports::FileStore::Writer& writer);

}  // namespace pallimo::logging
