// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <string>

#include "ports/http_client.h"

namespace pallimo::adapters::qt {

/// Where a URL leads, in the words of HTTP.
struct HttpTarget {
  bool isEncrypted = false;  ///< "https"
  QString host;              ///< without an IPv6 address's brackets
  quint16 port = 0;          ///< the scheme's own unless the URL names one
  QByteArray authority;      ///< host and port as the "Host" line has them, without a user's name
  QByteArray pathAndQuery;   ///< as they stand in the URL, not one character changed
};

/// Nothing when the text is no absolute web URL, strictly read. Pure.
std::optional<HttpTarget> httpTarget(const std::string& url);

/// What is sent for the request: HTTP/1.1, on a connection of its own. It tells the program's name
/// and nothing about the user, neither cookies nor the language. Pure.
QByteArray httpRequestText(const HttpTarget& target, ports::HttpCachePolicy cachePolicy);

}  // namespace pallimo::adapters::qt
