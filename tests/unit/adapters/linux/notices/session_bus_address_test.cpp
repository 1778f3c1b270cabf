// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/session_bus_address.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace pallimo::adapters::linux {
namespace {

using Addresses = std::vector<std::string>;

/// A variable of the environment for a scope.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* const old = std::getenv(name)) old_ = old;
    set(value);
  }
  ~Variable() { set(old_ ? old_->c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  void set(const char* value) {
    if (value == nullptr) {
      unsetenv(name_);
    } else {
      setenv(name_, value, 1);
    }
  }

  const char* const name_;
  std::optional<std::string> old_;
};

TEST(SessionBusAddress, IsWhatTheVariableSays) {
  EXPECT_EQ(sessionBusAddresses("unix:path=/a/bus,guid=12", "/run/user/1000"),
            Addresses{"unix:path=/a/bus,guid=12"});
}

TEST(SessionBusAddress, KeepsTheOrderOfSeveral) {
  EXPECT_EQ(sessionBusAddresses("unix:path=/a;unix:abstract=b", std::nullopt),
            (Addresses{"unix:path=/a", "unix:abstract=b"}));
}

TEST(SessionBusAddress, PassesOverEmptyOnes) {
  EXPECT_EQ(sessionBusAddresses(";unix:path=/a;;", std::nullopt), Addresses{"unix:path=/a"});
}

TEST(SessionBusAddress, NeverNamesWhatWouldStartAProgram) {
  EXPECT_EQ(sessionBusAddresses("autolaunch:", "/run/user/1000"), Addresses{});
  EXPECT_EQ(sessionBusAddresses("autolaunch:scope=*user;unixexec:path=/bin/true", std::nullopt),
            Addresses{});
  EXPECT_EQ(sessionBusAddresses("launchd:env=X;systemd:", std::nullopt), Addresses{});
}

TEST(SessionBusAddress, NeverNamesAnotherMachine) {
  EXPECT_EQ(sessionBusAddresses("tcp:host=a,port=1;nonce-tcp:host=a,port=1", std::nullopt),
            Addresses{});
}

TEST(SessionBusAddress, IsInTheRuntimeFolderWithoutTheVariable) {
  EXPECT_EQ(sessionBusAddresses(std::nullopt, "/run/user/1000"),
            Addresses{"unix:path=/run/user/1000/bus"});
  EXPECT_EQ(sessionBusAddresses("", "/run/user/1000"), Addresses{"unix:path=/run/user/1000/bus"});
}

TEST(SessionBusAddress, EscapesTheRuntimeFolder) {
  EXPECT_EQ(sessionBusAddresses(std::nullopt, "/a;b,c"), Addresses{"unix:path=/a%3bb%2cc/bus"});
}

TEST(SessionBusAddress, IsNotInAFolderThatIsNotAbsolute) {
  EXPECT_EQ(sessionBusAddresses(std::nullopt, "run"), Addresses{});
  EXPECT_EQ(sessionBusAddresses(std::nullopt, ""), Addresses{});
}

TEST(SessionBusAddress, IsNothingWithoutEither) {
  EXPECT_EQ(sessionBusAddresses(std::nullopt, std::nullopt), Addresses{});
}

TEST(SessionBusAddress, IsReadFromTheEnvironment) {
  const Variable folder("XDG_RUNTIME_DIR", "/run/user/7");
  const Variable address("DBUS_SESSION_BUS_ADDRESS", nullptr);
  EXPECT_EQ(sessionBusAddresses(), Addresses{"unix:path=/run/user/7/bus"});
  const Variable given("DBUS_SESSION_BUS_ADDRESS", "unix:path=/a");
  EXPECT_EQ(sessionBusAddresses(), Addresses{"unix:path=/a"});
}

}  // namespace
}  // namespace pallimo::adapters::linux
