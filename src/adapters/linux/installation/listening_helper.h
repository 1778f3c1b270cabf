// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <string>

namespace pallimo::adapters::linux {

/// Ends the process that holds the helper's lock at `lockPath` (see HelperLock), at once and
/// whatever it is doing, and waits until it is gone. Never ourselves, nor any process but the
/// holder: the kernel says who that is, and the signal goes to a descriptor of the process and not
/// to its number. True also when nobody else holds the lock; false when the holder can't be ended
/// within the limit. Any thread.
bool endListeningHelper(const std::string& lockPath,
                        std::chrono::milliseconds limit = std::chrono::seconds(5));

}  // namespace pallimo::adapters::linux
