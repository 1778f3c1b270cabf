// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace pallimo::adapters::libplist {

// libplist reads a number as far as it goes and makes 0 of the rest: "2.5" is the integer 2 to it,
// "fast" the real 0, "010" the integer 8. So the text of a number is judged before.

/// How many characters to take from the front of an `<integer>`'s text, white space, sign and
/// leading zeros, so that libplist reads the number that stands there. The sign goes only when it
/// is a plus. Nothing when the text is no integer within -2^63 to 2^64 - 1, decimal or with 0x.
struct IntegerText {
  std::size_t skippedBeforeSign = 0;  ///< characters in front of the sign or the digits
  std::size_t skippedAfterSign = 0;   ///< leading zeros behind a minus
};
std::optional<IntegerText> judgeInteger(std::string_view text);

/// Whether the text of a `<real>` is a decimal number, with or without an exponent, or one of nan,
/// inf and infinity in any case. White space around it is allowed.
bool isReal(std::string_view text);

}  // namespace pallimo::adapters::libplist
