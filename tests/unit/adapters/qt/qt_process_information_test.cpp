// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_process_information.h"

#include <gtest/gtest.h>

#include <QString>
#include <QSysInfo>
#include <string>

namespace pallimo::adapters::qt {
namespace {

TEST(QtProcessInformation, TheSystemIsNamed) {
  const std::string version = QtProcessInformation().operatingSystemVersionString();
  EXPECT_FALSE(version.empty());
  EXPECT_EQ(version, QSysInfo::prettyProductName().toStdString());
}

TEST(QtProcessInformation, ItIsOneLine) {
  EXPECT_EQ(QtProcessInformation().operatingSystemVersionString().find('\n'), std::string::npos);
}

}  // namespace
}  // namespace pallimo::adapters::qt
