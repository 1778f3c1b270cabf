// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper_link/embedded_helper_version.h"

#include <string_view>

#include "base/property_list.h"

namespace pallimo::helper_link {

namespace {

// Where the system looks for the helpers that an app may install.
constexpr std::string_view kEmbeddedHelper =
    "Contents/Library/LaunchServices/com.ostrovane.powermetrics";

}  // namespace

std::optional<std::string> embeddedHelperVersion(const ports::Bundle& bundle) {
  const auto info = bundle.infoDictionary(kEmbeddedHelper);
  const base::PropertyList* version = info ? info->find("CFBundleShortVersionString") : nullptr;
  const std::string* text = version != nullptr ? version->text() : nullptr;
  return text != nullptr ? std::optional(*text) : std::nullopt;
}

}  // namespace pallimo::helper_link
