// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pallimo::adapters::libplist {

/// The first XML document in `bytes` from its outermost `<` to its outermost end tag: a view of
/// `bytes`, or of `scratch` when the document had to be rewritten. Any thread.
///
/// Nothing when there is no complete document, when a NUL stands in it, when its `<plist>` holds
/// two values, when it is nested 1,000 containers (`<dict>`, `<array>`) deep or deeper or has more
/// than a million elements or more entities than libplist should be given (xml_entities.h), when
/// the text of an `<integer>` or `<real>` is no such number, and when libplist might read its
/// markup in another way than this function does.
///
/// libplist builds and frees trees by recursion, so the depth has to be known before it begins; and
/// a count is worth something only if both see the same tags. Hence libplist is shown tags and text
/// alone: what precedes the outermost element is cut off, comments and processing instructions
/// inside it are taken out, CDATA becomes escaped text, `<key/>` two tags, and a tag is refused
/// whose end could be argued about (a `<` in it, or a `>` between its quotes).
std::optional<std::string_view> extractXML(std::string_view bytes, std::string& scratch);

}  // namespace pallimo::adapters::libplist
