// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

namespace pallimo::adapters::simulated {

/// The document's value. Throws JsonMismatch (json_node.h) when the text is not JSON, when a key
/// stands twice in an object (readers of JSON disagree about which one counts), when a number does
/// not fit, and when it is nested deeper than 64 levels, so that no later walk can exhaust the
/// stack. Numbers are read with a decimal point whatever the process's locale is. Any thread.
nlohmann::json parseStrictJson(std::string_view text);

}  // namespace pallimo::adapters::simulated
