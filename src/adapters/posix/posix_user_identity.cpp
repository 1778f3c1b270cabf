// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/posix/posix_user_identity.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace pallimo::adapters::posix {

namespace {

std::string textOf(const char* text) { return text == nullptr ? std::string() : text; }

std::optional<ports::UserIdentity::Account> accountOfEntry(const passwd* entry) {
  if (entry == nullptr) return std::nullopt;
  return ports::UserIdentity::Account{textOf(entry->pw_name), textOf(entry->pw_gecos),
                                      textOf(entry->pw_dir)};
}

}  // namespace

std::string PosixUserIdentity::environment(const char* name) const {
  return textOf(std::getenv(name));
}

std::optional<ports::UserIdentity::Account> PosixUserIdentity::account() const {
  return accountOfEntry(getpwuid(getuid()));
}

std::optional<ports::UserIdentity::Account> PosixUserIdentity::accountOf(
    const std::string& name) const {
  return accountOfEntry(getpwnam(name.c_str()));
}

std::string PosixUserIdentity::hostName() const {
  std::array<char, 256> name{};
  // One that is too long may come without its end.
  return gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

}  // namespace pallimo::adapters::posix
