// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <string>

namespace pallimo::adapters::qt {

// Settings are kept as text, whatever their kind, so that a file written by hand reads as well as
// one written by the app. Reading is lenient: what can't be converted is false or 0. Numbers are
// read in the C locale. Pure.

std::string textOfBool(bool value);
std::string textOfInteger(std::int64_t value);

/// "true" and "yes" in any case, and every number but 0.
bool boolOfText(const std::string& text);
/// The number at the text's beginning, cut to an integer and to its 64 bits.
std::int64_t integerOfText(const std::string& text);
/// The number at the text's beginning; "true" and "yes" are 1.
double doubleOfText(const std::string& text);

}  // namespace pallimo::adapters::qt
