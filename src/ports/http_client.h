// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

namespace pallimo::ports {

/// How much of what is stored locally may answer a request.
enum class HttpCachePolicy {
  useProtocol,                   ///< as HTTP's own rules have it
  reloadIgnoringLocalCacheData,  ///< the server is always asked
};

/// A GET request.
struct HttpRequest {
  std::string url;  ///< percent-encoded already, and sent as it stands
  HttpCachePolicy cachePolicy = HttpCachePolicy::useProtocol;
  double timeout = 60;  ///< s, above 0
  bool operator==(const HttpRequest&) const = default;
};

/// Fetches from web servers. Any thread.
class HttpClient {
 public:
  virtual ~HttpClient() = default;

  /// Sends the request in the background and returns at once; the answer and every failure are
  /// dropped, and what is under way when the app ends is given up. A URL that is none is not sent.
  virtual void send(const HttpRequest& request) = 0;
};

}  // namespace pallimo::ports
