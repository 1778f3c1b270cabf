// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

namespace pallimo::ports {

/// The files that installing the helper left behind. Called on the helper's one thread.
class HelperFiles {
 public:
  virtual ~HelperFiles() = default;

  /// Removes the installed helper and its job, and nothing else.
  virtual void removeInstalled() = 0;
};

}  // namespace pallimo::ports
