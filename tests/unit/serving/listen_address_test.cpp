// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "serving/listen_address.h"

#include <gtest/gtest.h>

#include <string>

namespace pallimo::serving {
namespace {

/// The address as it is told, or what is wrong with it.
std::string readAs(std::string_view text) {
  const auto address = parseListenAddress(text);
  if (const auto* problem = std::get_if<AddressProblem>(&address)) {
    switch (*problem) {
      case AddressProblem::notAnAddressAndPort:
        return "no address and port";
      case AddressProblem::notNumeric:
        return "not numeric";
      case AddressProblem::portOutOfRange:
        return "port out of range";
    }
  }
  return textOf(std::get<ports::ListenAddress>(address));
}

TEST(ListenAddress, IsAnAddressAndAPort) {
  EXPECT_EQ(parseListenAddress("192.0.2.7:9123"),
            (std::variant<ports::ListenAddress, AddressProblem>(
                ports::ListenAddress{"192.0.2.7", 9123})));
  EXPECT_EQ(readAs("0.0.0.0:9123"), "0.0.0.0:9123");
}

TEST(ListenAddress, IsTheLoopbackUnlessOneIsNamed) {
  EXPECT_EQ(readAs(":9123"), "127.0.0.1:9123");
  EXPECT_EQ(readAs("9123"), "127.0.0.1:9123");
  EXPECT_EQ(readAs("localhost:9123"), "127.0.0.1:9123");
}

TEST(ListenAddress, OfIPv6StandsInBrackets) {
  EXPECT_EQ(
      parseListenAddress("[::1]:9123"),
      (std::variant<ports::ListenAddress, AddressProblem>(ports::ListenAddress{"::1", 9123})));
  EXPECT_EQ(readAs("[::1]:9123"), "[::1]:9123");
  EXPECT_EQ(readAs("::1:9123"), "no address and port");
  EXPECT_EQ(readAs("[127.0.0.1]:9123"), "not numeric");
  EXPECT_EQ(readAs("[]:9123"), "not numeric");
}

TEST(ListenAddress, TakesPortsFrom1To65535) {
  EXPECT_EQ(readAs("127.0.0.1:1"), "127.0.0.1:1");
  EXPECT_EQ(readAs("127.0.0.1:65535"), "127.0.0.1:65535");
  EXPECT_EQ(readAs("127.0.0.1:0"), "port out of range");
  EXPECT_EQ(readAs("127.0.0.1:65536"), "port out of range");
  EXPECT_EQ(readAs("127.0.0.1:18446744073709551617"), "port out of range");
}

TEST(ListenAddress, NeedsAPortOfDigits) {
  for (const char* text : {"127.0.0.1", "127.0.0.1:", "", ":", "127.0.0.1:http", "127.0.0.1:+80",
                           "127.0.0.1:80 ", "127.0.0.1:8x0", "http://127.0.0.1:80/"}) {
    EXPECT_EQ(readAs(text), "no address and port") << text;
  }
}

TEST(ListenAddress, LooksNoNameUp) {
  for (const char* text : {"mac.example.org:9123", "*:9123", "127.1:9123", "127.0.0.256:9123",
                           "127.0.0.1 :9123", " :9123"}) {
    EXPECT_EQ(readAs(text), "not numeric") << text;
  }
}

}  // namespace
}  // namespace pallimo::serving
