// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper_link/protocol/xpc_protocol.h"

#include <gtest/gtest.h>

namespace pallimo::helper_link::protocol {
namespace {

TEST(XPCProtocol, NamesTheServiceAsItIsInstalled) {
  EXPECT_EQ(kMachServiceName, "com.ostrovane.powermetrics");
}

TEST(XPCProtocol, LooksTheServiceUpInThePrivilegedDomain) {
  EXPECT_EQ(kConnectionPrivileged, 1u << 12);
}

TEST(XPCProtocol, IsOfTheFirstVersion) { EXPECT_EQ(kProtocolVersion, 1); }

}  // namespace
}  // namespace pallimo::helper_link::protocol
