// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string_view>

#include "base/property_list.h"

namespace pallimo::ports {

/// The bundle that the app runs from. Any thread.
class Bundle {
 public:
  virtual ~Bundle() = default;

  /// The info dictionary of what lies at `path` within the bundle, a bundle or an executable that
  /// carries its own; the app's own for an empty path; nothing when there is none.
  virtual std::optional<base::PropertyList> infoDictionary(std::string_view path) const = 0;
};

}  // namespace pallimo::ports
