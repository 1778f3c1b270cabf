// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <vector>

#include "adapters/common/posix_process.h"
#include "base/mutex.h"
#include "ports/program_launcher.h"

namespace pallimo::adapters::common {

/// Programs as processes of this system, with an environment of PATH alone.
class PosixProgramLauncher final : public ports::ProgramLauncher {
 public:
  std::optional<base::Bytes> run(const std::string& path,
                                 const std::vector<std::string>& arguments) override;

 private:
  void reapEnded() PALLIMO_REQUIRES(mutex_);

  base::Mutex mutex_;
  /// Those that had closed their output and not yet ended.
  std::vector<PosixProcess> remains_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::adapters::common
