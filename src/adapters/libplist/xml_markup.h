// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::adapters::libplist {

/// White space as XML has it.
inline bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

inline bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// A comment ends at the first end mark behind its whole begin mark: "<!-->" is none.
inline constexpr std::string_view kCommentOpen = "<!--";
inline constexpr std::string_view kCommentClose = "-->";

}  // namespace pallimo::adapters::libplist
