// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>

namespace pallimo::ports {

/// How the system calls the user and the machine. Main thread.
class UserIdentity {
 public:
  /// What the system's list of users says of one.
  struct Account {
    std::string name;
    std::string fullName;  ///< of several fields, with commas between them
    std::string home;
  };

  virtual ~UserIdentity() = default;

  /// An entry of the process's environment; empty when there is none.
  virtual std::string environment(const char* name) const = 0;
  /// Who runs this process.
  virtual std::optional<Account> account() const = 0;
  virtual std::optional<Account> accountOf(const std::string& name) const = 0;
  /// The machine's name in the network; empty when it is unknown.
  virtual std::string hostName() const = 0;
};

}  // namespace pallimo::ports
