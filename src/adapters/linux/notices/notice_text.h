// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>

namespace pallimo::adapters::linux {

// How a notice's texts are written where it is shown. They hold file names, which are any bytes.
// Pure.

/// For a place that takes plain text: UTF-8, with U+FFFD for what is none and for control
/// characters.
std::string plainText(std::string_view bytes);

/// For a place that takes the markup of desktop notifications: as plainText(), but line ends and
/// tabs stay, and nothing in it can be taken for a tag.
std::string markupText(std::string_view bytes);

/// For a terminal: "<title>: <subtitle>" on one line, line ends as \n and \r, further control
/// characters as \x1B. Other bytes stay, so that a path can be copied; a backslash is no exception.
std::string noticeLine(std::string_view title, std::string_view subtitle);

}  // namespace pallimo::adapters::linux
