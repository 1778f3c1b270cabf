// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ports/url_opener.h"

namespace pallimo::fakes {

/// Opens nothing and remembers what was to be opened. Main thread.
class RecordingUrlOpener final : public ports::UrlOpener {
 public:
  void open(const std::string& url) override { opened_.push_back(url); }

  /// The addresses since the last call, in order.
  std::vector<std::string> takeOpened() { return std::exchange(opened_, {}); }

 private:
  std::vector<std::string> opened_;
};

}  // namespace pallimo::fakes
