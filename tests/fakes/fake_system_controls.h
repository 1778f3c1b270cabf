// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "ports/system_controls.h"

namespace pallimo::fakes {

/// Kernel variables that the test sets; all others can't be read. Set before use.
class FakeSystemControls final : public ports::SystemControls {
 public:
  void setInteger(std::string name, std::int64_t value) { integers_[std::move(name)] = value; }
  /// With the final NUL that the kernel counts.
  void setText(std::string name, std::string_view value) {
    base::Bytes bytes(value.begin(), value.end());
    bytes.push_back(0);
    setBytes(std::move(name), std::move(bytes));
  }
  void setBytes(std::string name, base::Bytes value) { bytes_[std::move(name)] = std::move(value); }

  std::optional<std::int64_t> integer(std::string_view name) const override {
    return find(integers_, name);
  }
  std::optional<base::Bytes> bytes(std::string_view name) const override {
    return find(bytes_, name);
  }

 private:
  template <typename Value>
  using Variables = std::map<std::string, Value, std::less<>>;

  template <typename Value>
  static std::optional<Value> find(const Variables<Value>& variables, std::string_view name) {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional<Value>(found->second);
  }

  Variables<std::int64_t> integers_;
  Variables<base::Bytes> bytes_;
};

}  // namespace pallimo::fakes
