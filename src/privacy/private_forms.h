// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

#include "privacy/text_span.h"

namespace pallimo::privacy {

/// What has the form of a serial number, of a UUID, of a network card's address or of an e-mail
/// address, also inside a longer word. Pure.
TextSpans spansOfForms(std::string_view text);

}  // namespace pallimo::privacy
