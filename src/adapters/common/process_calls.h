// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <spawn.h>
#include <sys/types.h>

#include "adapters/common/descriptor.h"

namespace pallimo::adapters::common {

// The few calls about processes that no two systems share. Each system has its own definitions, in
// a folder of its own; the build picks one. Any thread. Errors are errno values, 0 for none.

/// A pipe that no program started later inherits.
int makePipe(Descriptor& reader, Descriptor& writer);

/// Makes a program that is spawned with these inherit no descriptor but the standard three, which
/// the actions already open. `flags` are the attributes' flags so far, which this adds to.
int closeOtherDescriptors(posix_spawn_file_actions_t& actions, short& flags);

/// A descriptor that becomes readable when the child has ended, at once if it has already. The
/// child must not have been waited for, so that its number is its own.
int openExitDescriptor(pid_t child, Descriptor& exit);

}  // namespace pallimo::adapters::common
