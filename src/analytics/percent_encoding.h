// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>

namespace pallimo::analytics {

/// The text as the value of one parameter of a URL's query (RFC 3986): ASCII letters and digits and
/// "-._~:" stand as they are, every other byte of the UTF-8 is "%" and two upper-case digits. The
/// characters a query may hold beside those (!$&'()*+,;=@/?) are encoded too, since servers take
/// some of them for separators or blanks. Empty when the text is no UTF-8. Pure.
std::string percentEncodedValue(std::string_view text);

}  // namespace pallimo::analytics
