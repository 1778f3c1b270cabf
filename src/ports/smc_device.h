// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>

#include "ports/smc_request_record.h"

namespace pallimo::ports {

/// The kernel's user client of the System Management Controller. One caller at a time.
class SmcDevice {
 public:
  virtual ~SmcDevice() = default;

  /// A handle to the first service "AppleSMC", opened for this task with type 0; never 0. Nothing,
  /// the same in every case, when the kernel's main port, the search, the service or its opening
  /// fails. What the search itself held, iterator and service, stays unreleased: no caller sees it.
  virtual std::optional<std::uint32_t> open() = 0;
  /// One call with a structure: 80 bytes in, room for 80 bytes out. Returns the kernel's result,
  /// 0 when the call succeeded; `output` counts only then. A handle that is not open fails.
  virtual std::int32_t callStructMethod(std::uint32_t connection, std::uint32_t selector,
                                        const SMCRequestRecord& input,
                                        SMCRequestRecord& output) = 0;
  /// Closes the handle.
  virtual void close(std::uint32_t connection) = 0;
};

}  // namespace pallimo::ports
