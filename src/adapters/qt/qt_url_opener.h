// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/url_opener.h"

namespace pallimo::adapters::qt {

/// The desktop's own choice, as Qt knows it. Main thread, with a QGuiApplication; without one
/// nothing is opened.
class QtUrlOpener final : public ports::UrlOpener {
 public:
  void open(const std::string& url) override;
};

}  // namespace pallimo::adapters::qt
