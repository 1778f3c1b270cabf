// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "helper/powermetrics_command.h"
#include "ports/child_processes.h"
#include "ports/helper_files.h"
#include "ports/helper_listener.h"
#include "ports/main_queue.h"
#include "ports/system_log.h"

namespace pallimo::helper {

/// Everything the helper asks of the system it runs on. What it hands out lives as long as itself.
class HelperPlatform {
 public:
  virtual ~HelperPlatform() = default;

  virtual ports::MainQueue& mainQueue() = 0;
  virtual ports::ChildProcesses& childProcesses() = 0;
  virtual ports::HelperFiles& helperFiles() = 0;
  virtual ports::SystemLog& systemLog() = 0;
  virtual std::unique_ptr<ports::HelperListener> makeListener() = 0;
  virtual PowermetricsTool powermetrics() = 0;
  /// The version of the helper.
  virtual std::string version() = 0;
  /// How long the helper stays without a client.
  virtual std::chrono::milliseconds idleLimit() { return std::chrono::seconds(5); }

  /// The helper listens, or will never: whoever started it need not wait any longer.
  virtual void didStart() = 0;
  /// Runs the main queue until stop() is called or the system wants the program to end.
  virtual void run() = 0;
  virtual void stop() = 0;
};

/// The whole helper: serves clients until it shall end, and leaves neither a child nor a socket.
/// Returns the exit status, 0 also when another helper serves already: the client that had this one
/// started will find the other.
int runHelper(HelperPlatform& platform);

}  // namespace pallimo::helper
