// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/standard_output.h"

namespace pallimo::adapters::posix {

/// Prints samples to an open file descriptor, unbuffered, so that a reader sees each sample when it
/// is there. The descriptor is not closed. SIGPIPE has to be ignored by the process. Main thread.
class DescriptorOutput final : public ports::StandardOutput {
 public:
  explicit DescriptorOutput(int descriptor) : descriptor_(descriptor) {}

  State write(std::string_view text) override;
  std::string failure() const override;

 private:
  const int descriptor_;
  int error_ = 0;  ///< errno of the write that failed
};

}  // namespace pallimo::adapters::posix
