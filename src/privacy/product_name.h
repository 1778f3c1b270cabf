// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::privacy {

/// Whether a word is put together from the names of Apple's products, with nothing but digits and
/// punctuation between them: "iMac", "Mac-mini-2", "max". Of upper and lower case (of ASCII) alike.
/// Pure.
bool isProductName(std::string_view word);

}  // namespace pallimo::privacy
