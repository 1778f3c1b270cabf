// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::analytics {

/// Whether a run may tell the server anything. Not when the user said no through the environment
/// variable DO_NOT_TRACK (consoledonottrack.com), whose value is `doNotTrack`, nullptr when it is
/// not set: anything but an empty text and "0" is a no. Not either when `serverURL` is no absolute
/// web URL, or its host lies below ".invalid", the names that never exist (RFC 6761) and stand for
/// a server that nobody chose. Pure.
bool mayTrack(std::string_view serverURL, const char* doNotTrack);

}  // namespace pallimo::analytics
