// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_process_information.h"

#include <QString>
#include <QSysInfo>

namespace pallimo::adapters::qt {

std::string QtProcessInformation::operatingSystemVersionString() const {
  return QSysInfo::prettyProductName().toStdString();
}

}  // namespace pallimo::adapters::qt
