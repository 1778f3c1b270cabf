// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>

namespace pallimo::ports {

/// Standard output, where a headless run prints its samples and a diagnosis its report. Main
/// thread.
class StandardOutput {
 public:
  enum class State {
    open,    ///< the text is written
    closed,  ///< nobody reads any more
    failed,  ///< it can't be written; failure() says why
  };

  virtual ~StandardOutput() = default;

  /// Writes the whole text; waits for a slow reader.
  virtual State write(std::string_view text) = 0;
  /// What the system said about the write that failed, for example "No space left on device".
  virtual std::string failure() const = 0;
};

}  // namespace pallimo::ports
