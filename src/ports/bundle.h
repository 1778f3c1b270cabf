// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>

namespace pallimo::ports {

/// What lies inside the app's bundle. Any thread.
class Bundle {
 public:
  virtual ~Bundle() = default;

  /// "CFBundleShortVersionString" of the helper embedded at
  /// "Contents/Library/LaunchServices/com.ostrovane.powermetrics", or nothing when there is no
  /// helper, no info dictionary or no such text.
  virtual std::optional<std::string> embeddedHelperVersion() const = 0;
};

}  // namespace pallimo::ports
