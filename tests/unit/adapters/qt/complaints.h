// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QString>
#include <QtGlobal>
#include <vector>

namespace pallimo::adapters::qt {

/// What Qt has complained of while one of these was there.
class Complaints {
 public:
  Complaints() { qInstallMessageHandler(&Complaints::add); }
  ~Complaints() { qInstallMessageHandler(nullptr); }
  Complaints(const Complaints&) = delete;
  Complaints& operator=(const Complaints&) = delete;

  std::size_t count() const { return messages().size(); }

 private:
  static std::vector<QString>& messages() {
    static std::vector<QString> messages;
    return messages;
  }
  static void add(QtMsgType, const QMessageLogContext&, const QString& message) {
    messages().push_back(message);
  }
};

}  // namespace pallimo::adapters::qt
