// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/process_information.h"

namespace pallimo::adapters::qt {

/// What Qt knows of the system: the name and version that it goes by, "Debian GNU/Linux 12
/// (bookworm)", and nothing of the machine. Off macOS, which words its version itself. Any thread.
class QtProcessInformation final : public ports::ProcessInformation {
 public:
  std::string operatingSystemVersionString() const override;
};

}  // namespace pallimo::adapters::qt
