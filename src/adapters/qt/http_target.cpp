// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/http_target.h"

#include <QUrl>
#include <algorithm>

namespace pallimo::adapters::qt {

namespace {

constexpr quint16 kHttpPort = 80;
constexpr quint16 kHttpsPort = 443;

/// A blank or a line end would begin something else within the request.
bool isOfPrintedAscii(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char each) { return each > ' ' && each < 0x7f; });
}

QByteArray pathAndQueryOf(const std::string& url) {
  const std::size_t authority = url.find("//") + 2;
  const std::string rest = url.substr(std::min(url.find_first_of("/?#", authority), url.size()));
  const std::string target = rest.substr(0, rest.find('#'));
  return QByteArray::fromStdString(target.starts_with('/') ? target : "/" + target);
}

}  // namespace

std::optional<HttpTarget> httpTarget(const std::string& url) {
  if (!isOfPrintedAscii(url)) return std::nullopt;
  QUrl parsed = QUrl::fromEncoded(QByteArray::fromStdString(url), QUrl::StrictMode);
  const bool isEncrypted = parsed.scheme() == "https";
  const bool isWeb = isEncrypted || parsed.scheme() == "http";
  if (!parsed.isValid() || !isWeb || parsed.host().isEmpty()) return std::nullopt;
  parsed.setUserInfo({});
  return HttpTarget{.isEncrypted = isEncrypted,
                    .host = parsed.host(QUrl::FullyEncoded),
                    .port = static_cast<quint16>(parsed.port(isEncrypted ? kHttpsPort : kHttpPort)),
                    .authority = parsed.authority(QUrl::FullyEncoded).toLatin1(),
                    .pathAndQuery = pathAndQueryOf(url)};
}

QByteArray httpRequestText(const HttpTarget& target, ports::HttpCachePolicy cachePolicy) {
  QByteArray text = "GET " + target.pathAndQuery + " HTTP/1.1\r\n";
  text += "Host: " + target.authority + "\r\n";
  text += "User-Agent: Pallimo\r\nAccept: */*\r\nConnection: close\r\n";
  if (cachePolicy == ports::HttpCachePolicy::reloadIgnoringLocalCacheData) {
    text += "Cache-Control: no-cache\r\n";
  }
  return text + "\r\n";
}

}  // namespace pallimo::adapters::qt
