// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/web_url.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>

namespace pallimo::analytics {

namespace {

// <cctype> asks the locale, where bytes beyond ASCII may be letters.
constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";
constexpr std::string_view kURLCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~:/?#[]@!$&'()*+,;=%";

bool isHexDigit(char character) { return kHexDigits.find(character) != std::string_view::npos; }

bool isWellFormed(std::string_view url) {
  if (url.find_first_not_of(kURLCharacters) != std::string_view::npos) return false;
  for (auto at = url.find('%'); at != std::string_view::npos; at = url.find('%', at + 1)) {
    if (url.size() - at < 3 || !isHexDigit(url[at + 1]) || !isHexDigit(url[at + 2])) return false;
  }
  return true;
}

/// The prefix is in lower case.
bool beginsWith(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), [](char lower, char any) {
           return any == lower || (any >= 'A' && any <= 'Z' && any - 'A' + 'a' == lower);
         });
}

/// An IPv6 address, or a name: of what a URL may hold, only letters, digits, "-", "." and "_" stand
/// in one.
bool isHost(std::string_view text, bool isAddress) {
  if (isAddress) return text.find(':') != std::string_view::npos;
  return !text.empty() && text.find_first_of("[]%~!$&'()*+,;=") == std::string_view::npos;
}

bool isPort(std::string_view text) {
  if (text.empty()) return true;
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

std::optional<std::string_view> hostOfWebURL(std::string_view url) {
  if (!isWellFormed(url)) return std::nullopt;
  if (beginsWith(url, "http://")) {
    url.remove_prefix(7);
  } else if (beginsWith(url, "https://")) {
    url.remove_prefix(8);
  } else {
    return std::nullopt;
  }
  std::string_view authority = url.substr(0, url.find_first_of("/?#"));
  authority.remove_prefix(authority.rfind('@') + 1);  // npos + 1 is 0
  const bool isAddress = authority.starts_with('[');
  const auto end =
      isAddress ? authority.find(']') : std::min(authority.find(':'), authority.size());
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view host = isAddress ? authority.substr(1, end - 1) : authority.substr(0, end);
  std::string_view port = authority.substr(isAddress ? end + 1 : end);
  if (!isHost(host, isAddress) || (!port.empty() && !port.starts_with(':'))) return std::nullopt;
  if (!port.empty()) port.remove_prefix(1);
  return isPort(port) ? std::optional(host) : std::nullopt;
}

}  // namespace pallimo::analytics
