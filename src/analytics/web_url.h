// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string_view>

namespace pallimo::analytics {

/// The host that an absolute "http" or "https" URL names, as it stands there, an IPv6 address
/// without its brackets. Nothing when the text is no such URL: no host or an odd one, a port that
/// is no number up to 65535, a character that URLs don't hold, a "%" without its two digits (RFC
/// 3986). Pure.
std::optional<std::string_view> hostOfWebURL(std::string_view url);

}  // namespace pallimo::analytics
