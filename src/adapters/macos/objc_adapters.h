// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <string_view>

#include "base/executor.h"
#include "ports/helper_connection.h"
#include "ports/process_information.h"
#include "ports/software_updater.h"
#include "ports/user_notifications.h"

// What is written in Objective-C++, for the C++ around it.
namespace pallimo::adapters::macos {

/// Connections to the service that launchd keeps under a name. Each lets nobody answer but a
/// program that meets the code-signing requirement; one that can't be read gives no connections.
/// Everything is delivered on `delivery`, which outlives the connector; destroying that waits a
/// second at most until the last connection has sent what it was given.
std::unique_ptr<ports::HelperConnector> makeHelperConnector(base::Executor& delivery,
                                                            std::string_view requirement);

/// The process's notification centre. One in the process at a time. A program without a bundle has
/// none: then nothing is shown and nobody is asked.
std::unique_ptr<ports::UserNotifications> makeUserNotifications();

/// The system's version as the system words it, "Version 14.5 (Build 23F79)".
std::unique_ptr<ports::ProcessInformation> makeProcessInformation();

/// Sparkle, which decides everything; its feed stands in the app's Info.plist. Main thread.
std::unique_ptr<ports::SoftwareUpdater> makeSoftwareUpdater();

/// Keeps every window of the app without zoom and full screen, on each notice that windows are
/// about to be updated, and turns tabs off. Once, main thread, with a QApplication; never undone.
void keepWindowRules();
/// Hides the title bar of the window that the view (an NSView, QWidget::winId) stands in.
void hideTitleBar(void* view);

}  // namespace pallimo::adapters::macos
