// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>

#include "ports/bundle.h"

namespace pallimo::helper_link {

/// The version of the helper that the app embeds; nothing when none is embedded, or when its
/// version is not a text. Any thread.
std::optional<std::string> embeddedHelperVersion(const ports::Bundle& bundle);

}  // namespace pallimo::helper_link
