// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pallimo::adapters::simulated {

/// What goes wrong on purpose in a simulated Mac, so that every way in which a helper can fail its
/// user can be seen. By default nothing does. Values only.
struct Faults {
  /// Creating an authorisation gives this status and no token, also when it is 0.
  std::optional<std::int32_t> authorizationStatus = {};
  bool blessRefused = false;     ///< the administrator declines every installation
  bool helperSilent = false;     ///< the helper never answers isResponding
  bool helperAnswersNo = false;  ///< the helper answers isResponding with NO, unless it is silent
  /// What the helper says it is, instead of the truth.
  std::optional<std::string> helperVersion = {};
  /// The helper's process ends without a word when it gets this request of its life, counted from 1
  /// over all clients.
  std::optional<std::uint32_t> helperDiesOnRequest = {};
  bool operator==(const Faults&) const = default;
};

}  // namespace pallimo::adapters::simulated
