// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "privacy/product_name.h"

#include <algorithm>
#include <array>

#include "privacy/ascii_letters.h"

namespace pallimo::privacy {

namespace {

// Longer ones first, where one begins with another.
constexpr std::array<std::string_view, 12> kProductNames = {"macbook", "studio", "apple", "local",
                                                            "ultra",   "imac",   "mini",  "book",
                                                            "mac",     "air",    "pro",   "max"};

}  // namespace

bool isProductName(std::string_view word) {
  const std::string low = letters::lowered(word);
  bool hasName = false;
  for (std::string_view rest = low; !rest.empty();) {
    const auto* name = std::find_if(kProductNames.begin(), kProductNames.end(),
                                    [&](std::string_view one) { return rest.starts_with(one); });
    if (name != kProductNames.end()) {
      rest.remove_prefix(name->size());
      hasName = true;
    } else if (!letters::isLetter(rest.front())) {
      rest.remove_prefix(1);
    } else {
      return false;
    }
  }
  return hasName;
}

}  // namespace pallimo::privacy
