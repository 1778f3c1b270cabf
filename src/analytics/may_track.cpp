// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/may_track.h"

#include <algorithm>
#include <string>

#include "analytics/web_url.h"

namespace pallimo::analytics {

namespace {

bool isRefusal(const char* doNotTrack) {
  const std::string_view value = doNotTrack == nullptr ? "" : doNotTrack;
  return !value.empty() && value != "0";
}

bool neverExists(std::string_view host) {
  if (host.ends_with('.')) host.remove_suffix(1);  // the root, which may be left out
  std::string name = "." + std::string(host);
  std::transform(name.begin(), name.end(), name.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
  });
  return name.ends_with(".invalid");
}

}  // namespace

bool mayTrack(std::string_view serverURL, const char* doNotTrack) {
  const auto host = hostOfWebURL(serverURL);
  return host && !neverExists(*host) && !isRefusal(doNotTrack);
}

}  // namespace pallimo::analytics
