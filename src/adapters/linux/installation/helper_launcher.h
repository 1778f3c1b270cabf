// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <string>

#include "adapters/linux/installation/state_folder.h"

namespace pallimo::adapters::linux {

/// How starting the helper went.
enum class HelperStart {
  kNotInstalled,  ///< there is no helper to start
  kFailed,        ///< the system refused, or the helper said nothing within the limit
  kStarted        ///< it listens, or it has ended already: connecting tells
};

/// launchd's stand-in: starts the installed helper when somebody wants to connect and nobody
/// serves. Any thread; the call blocks until the helper is ready. Two may start one at once: the
/// helper that finds the other listening ends by itself.
///
/// The helper is nobody's child, in a session of its own, in the root folder, with /dev/null as its
/// standard streams, no signal blocked or ignored, and in its environment only PATH and
/// PALLIMO_READY_FD: the number of the one descriptor it inherits, which it closes when it listens.
class HelperLauncher {
 public:
  explicit HelperLauncher(StateFolder folder,
                          std::chrono::milliseconds limit = std::chrono::seconds(5));

  HelperStart operator()() const;

 private:
  std::string program_;
  std::chrono::milliseconds limit_;
};

}  // namespace pallimo::adapters::linux
