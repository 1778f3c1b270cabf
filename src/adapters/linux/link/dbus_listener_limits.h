// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace pallimo::adapters::linux {

/// What one helper grants all its clients together. They are its own user's programs, so this is
/// against mistakes rather than malice: a client that hangs, leaks connections or never reads.
struct DBusListenerLimits {
  /// A client that has not proven who it is after this time is sent away.
  std::chrono::milliseconds authentication{5000};
  /// So many may be proving it at once; more are sent away, and may try again.
  std::size_t unauthenticatedPeers = 16;
  /// So many may be connected at once, those included.
  std::size_t peers = 64;
  /// A client that leaves more than this unread is sent away: four of the longest documents.
  std::int64_t outgoingBytes = std::int64_t{64} << 20;
  /// The longest message that a client may send; the five are below 200 bytes.
  std::int64_t incomingMessageBytes = std::int64_t{64} << 10;
  /// How long a client that is being sent away may take to read what was sent before.
  std::chrono::milliseconds flush{1000};
};

}  // namespace pallimo::adapters::linux
