// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/start/command_line.h"
#include "app/start/platform.h"
#include "ports/http_client.h"

namespace pallimo::app {

/// Owns the adapters that a platform consists of. Main thread; needs a QCoreApplication and is
/// destroyed before it, after everything that was built from the platform.
class PlatformOwner {
 public:
  virtual ~PlatformOwner() = default;

  virtual const Platform& platform() const = 0;
  /// Ends the helper link: what was sent is still written out, then the delivery thread runs dry
  /// and ends. After it nothing may be sent, and what was built from the platform may go.
  virtual void endLink() = 0;
};

/// Why there is no platform, in one line without the program's name.
struct StartError {
  std::string message;
};

/// The server that learns of a launch, and who tells it. Both are a matter of the program and the
/// run, not of the system.
struct Analytics {
  std::string_view url;  ///< base of the server, with "/" at its end; of static storage
  std::unique_ptr<ports::HttpClient> client;
};

/// Fills the platform for this operating system. Each system has its own definition, in a folder of
/// its own; the build picks one.
std::variant<std::unique_ptr<PlatformOwner>, StartError> makePlatform(const Options& options,
                                                                      Analytics analytics);

/// Why no window can be shown here, if so: asked before a QApplication is made, which stops the
/// program where there is no display. Each system has its own definition.
std::optional<StartError> missingDisplay();

/// What `--list-machines` prints, line by line: the machines that are built in and, behind them,
/// the recording that the options name. A machine that can't be used is the error of a start with
/// it.
std::variant<std::vector<std::string>, StartError> listedMachines(const Options& options);

}  // namespace pallimo::app
