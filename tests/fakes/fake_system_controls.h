// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/bytes.h"
#include "ports/system_controls.h"

namespace pallimo::fakes {

/// Kernel variables that the test sets; all others can't be read. Set before use.
class FakeSystemControls final : public ports::SystemControls {
 public:
  /// In 4 bytes, as the kernel keeps a type or a count.
  void setInteger(std::string name, std::int32_t value) {
    base::Bytes bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    setBytes(std::move(name), std::move(bytes));
  }
  /// With the final NUL that the kernel counts.
  void setText(std::string name, std::string_view value) {
    base::Bytes bytes(value.begin(), value.end());
    bytes.push_back(0);
    setBytes(std::move(name), std::move(bytes));
  }
  void setBytes(std::string name, base::Bytes value) {
    variables_[std::move(name)] = std::move(value);
  }

  std::optional<base::Bytes> bytes(std::string_view name) const override {
    const auto found = variables_.find(name);
    return found == variables_.end() ? std::nullopt : std::optional<base::Bytes>(found->second);
  }

 private:
  std::map<std::string, base::Bytes, std::less<>> variables_;
};

}  // namespace pallimo::fakes
