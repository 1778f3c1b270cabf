// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <dbus/dbus.h>

#include <string_view>

#include "adapters/linux/link/dbus_messages.h"

namespace pallimo::adapters::linux {

/// Whether the desktop plays a sound with a notice.
enum class NoticeSound { kDefault, kNone };

/// The call that shows a notice: Notify of org.freedesktop.Notifications, as the Desktop
/// Notifications protocol 1.2 has it. Every notice stands for itself, for as long as the desktop
/// lets notices stand. Empty when memory is short. Any thread.
///
/// A desktop's notification service is, as a rule, started by the first call to it: the bus may do
/// so, or most first notices would be lost. The app itself starts nothing.
DBusMessagePtr makeNotify(std::string_view title, std::string_view subtitle, NoticeSound sound);

}  // namespace pallimo::adapters::linux
