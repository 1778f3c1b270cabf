// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/http_client.h"

namespace pallimo::analytics {

/// Sends nothing: for runs that tell nobody about themselves. Any thread.
class SilentHttpClient final : public ports::HttpClient {
 public:
  void send(const ports::HttpRequest&) override {}
};

}  // namespace pallimo::analytics
