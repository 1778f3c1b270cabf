// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper_link/authorization.h"

#include <string_view>
#include <utility>
#include <vector>

namespace pallimo::helper_link {

namespace {

constexpr std::string_view kAdministratorRight = "system.privilege.admin";
// Interaction allowed (1), extend rights (2), pre-authorize (16).
constexpr std::uint32_t kCopyingFlags = 1 | 2 | 16;

// What the system says to a call with an empty reference, and of a tool that can't be executed.
constexpr std::int32_t kInvalidReference = -60002;
constexpr std::int32_t kToolExecuteFailure = -60031;

std::vector<std::string> splitAtSpaces(const std::string& line) {
  std::vector<std::string> pieces;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = line.find(' ', begin)) != std::string::npos; begin = end + 1) {
    pieces.push_back(line.substr(begin, end - begin));
  }
  pieces.push_back(line.substr(begin));
  return pieces;
}

}  // namespace

std::optional<Authorization::Error> Authorization::executeWithPrivileges(
    const std::string& commandLine) {
  if (!authorizationRef_) {
    ports::AuthorizationAttempt attempt = services_.createAuthorization();
    if (attempt.status != 0) return Error{Error::Kind::creationFailed, attempt.status};
    authorizationRef_ = std::move(attempt.token);
  }
  if (!authorizationRef_) return Error{Error::Kind::copyingRightFailed, kInvalidReference};
  const std::vector<std::string> pieces = splitAtSpaces(commandLine);
  const std::int32_t copied =
      services_.copyRight(*authorizationRef_, kAdministratorRight, kCopyingFlags);
  if (copied != 0) return Error{Error::Kind::copyingRightFailed, copied};
  const std::int32_t executed = services_
                                    .executeWithPrivileges(*authorizationRef_, pieces.front(),
                                                           {pieces.begin() + 1, pieces.end()})
                                    .value_or(kToolExecuteFailure);
  if (executed != 0) return Error{Error::Kind::executingFailed, executed};
  return std::nullopt;
}

}  // namespace pallimo::helper_link
