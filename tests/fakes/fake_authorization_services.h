// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ports/authorization_services.h"

namespace pallimo::fakes {

/// An administrator who answers as the test says: by default grants everything. Test's thread.
class FakeAuthorizationServices final : public ports::AuthorizationServices {
 public:
  class Token final : public ports::AuthorizationToken {};

  ports::AuthorizationAttempt attempt{0, std::make_shared<Token>()};
  std::int32_t copyStatus = 0;
  /// Nothing: a system without the function.
  std::optional<std::int32_t> executeStatus = 0;
  /// What the calls were, in order: "createAuthorization", "copyRight <right> <flags>",
  /// "execute [<path>][<argument>]...".
  std::vector<std::string> calls;
  /// The tokens that came with the calls.
  std::vector<const ports::AuthorizationToken*> tokens;
  /// Runs inside each call, after it was noted.
  std::function<void(const std::string&)> onCall;

  ports::AuthorizationAttempt createAuthorization() override {
    note("createAuthorization");
    return attempt;
  }

  std::int32_t copyRight(const ports::AuthorizationToken& token, std::string_view right,
                         std::uint32_t flags) override {
    tokens.push_back(&token);
    note("copyRight " + std::string(right) + " " + std::to_string(flags));
    return copyStatus;
  }

  std::optional<std::int32_t> executeWithPrivileges(
      const ports::AuthorizationToken& token, const std::string& path,
      const std::vector<std::string>& arguments) override {
    tokens.push_back(&token);
    std::string call = "execute [" + path + "]";
    for (const std::string& argument : arguments) call += "[" + argument + "]";
    note(std::move(call));
    return executeStatus;
  }

 private:
  void note(std::string call) {
    calls.push_back(std::move(call));
    if (onCall) onCall(calls.back());
  }
};

}  // namespace pallimo::fakes
