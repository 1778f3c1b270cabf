// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ports/helper_installer.h"

namespace pallimo::fakes {

/// A system that installs what it is told to, unless the test says otherwise. Test's thread.
class FakeHelperInstaller final : public ports::HelperInstaller {
 public:
  bool blesses = true;
  /// What the calls were, in order: "bless <label>".
  std::vector<std::string> calls;
  /// The token of the last bless().
  const ports::AuthorizationToken* blessedWith = nullptr;
  /// Runs inside each call, after it was noted.
  std::function<void(const std::string&)> onCall;

  bool bless(std::string_view label, const ports::AuthorizationToken& token) override {
    blessedWith = &token;
    note("bless " + std::string(label));
    return blesses;
  }

 private:
  void note(std::string call) {
    calls.push_back(std::move(call));
    if (onCall) onCall(calls.back());
  }
};

}  // namespace pallimo::fakes
