// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

namespace pallimo::ports {

/// Opens addresses with what the user has chosen for them: browser, mail program. Main thread.
class UrlOpener {
 public:
  virtual ~UrlOpener() = default;

  /// Returns at once; nobody learns whether something opened.
  virtual void open(const std::string& url) = 0;
};

}  // namespace pallimo::ports
