// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "ports/system_controls.h"

namespace pallimo::adapters::simulated {

/// A kernel variable is a text or an integer.
using SystemControlValue = std::variant<std::string, std::int64_t>;
/// By name. An absent name is a variable that can't be read.
using SystemControlValues = std::map<std::string, SystemControlValue, std::less<>>;

/// Kernel variables made of data: a text with its final NUL; an integer in 4 bytes when 32 bits
/// hold it, with a sign or without, else in 8. Constant after construction; any thread.
class SimulatedSystemControls final : public ports::SystemControls {
 public:
  explicit SimulatedSystemControls(SystemControlValues values);

  std::optional<base::Bytes> bytes(std::string_view name) const override;

 private:
  const SystemControlValues values_;
};

}  // namespace pallimo::adapters::simulated
