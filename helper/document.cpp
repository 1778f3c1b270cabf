// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/document.h"

#include <algorithm>
#include <string_view>

namespace pallimo::helper {

namespace {

bool isBinary(const base::Bytes& printed) {
  constexpr std::string_view kMagic = "bplist";
  return printed.size() >= kMagic.size() &&
         std::equal(kMagic.begin(), kMagic.end(), printed.begin());
}

}  // namespace

base::Bytes trimDocument(base::Bytes printed) {
  if (isBinary(printed)) return printed;
  const auto isText = [](std::uint8_t byte) { return byte != 0; };
  printed.erase(std::find_if(printed.rbegin(), printed.rend(), isText).base(), printed.end());
  printed.erase(printed.begin(), std::find_if(printed.begin(), printed.end(), isText));
  return printed;
}

}  // namespace pallimo::helper
