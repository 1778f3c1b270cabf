// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "ports/helper_connection.h"

namespace pallimo::adapters::simulated {

/// Makes another connector's connections and tells, before the app sees a result, which one it is:
/// the simulated sensors then show the moment that the result is about. Everything else passes
/// through as it is. Any thread.
///
/// Results are counted for each connection from one, those without a document too, since each
/// answers one request. Its connections hold the inner connection and, until they are invalidated,
/// the exported object; they need the connector no more once they are made.
class FollowingHelperConnector final : public ports::HelperConnector {
 public:
  /// Called with the result's number within its connection, on the thread that delivers it, which
  /// is the inner connector's executor.
  using BeforeResult = std::function<void(std::uint64_t number)>;

  /// `inner` outlives the object.
  FollowingHelperConnector(ports::HelperConnector& inner, BeforeResult beforeResult);

  /// nullptr when the inner connector makes none.
  std::shared_ptr<ports::HelperConnection> connect(std::string_view machServiceName,
                                                   unsigned options) override;

 private:
  ports::HelperConnector& inner_;
  const BeforeResult beforeResult_;
};

}  // namespace pallimo::adapters::simulated
