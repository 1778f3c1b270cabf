// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>

namespace pallimo::darwin {

/// What the fakes of a Mac's process calls do next, and what they were asked.
struct FakeProcessCalls {
  int kqueueError = 0;         ///< errno of the next kqueue(), once
  int keventError = 0;         ///< errno of the next kevent(), once
  std::optional<short> flags;  ///< of the last program that was spawned
};

FakeProcessCalls& fakeProcessCalls();

}  // namespace pallimo::darwin
