// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/subscription.h"

namespace pallimo::ports {

/// The user's settings. Reads are conversions, as lenient as the system's own store: an absent key
/// and a value that can't be converted read as false, 0 or nothing. Any thread.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  virtual bool contains(std::string_view key) const = 0;
  virtual bool boolForKey(std::string_view key) const = 0;
  virtual std::int64_t integerForKey(std::string_view key) const = 0;
  virtual double doubleForKey(std::string_view key) const = 0;
  /// Absent and empty differ.
  virtual std::optional<std::string> textForKey(std::string_view key) const = 0;

  virtual void setBool(std::string_view key, bool value) = 0;
  virtual void setInteger(std::string_view key, std::int64_t value) = 0;
  virtual void setText(std::string_view key, std::string_view value) = 0;
  virtual void remove(std::string_view key) = 0;

  /// Calls `observer` after every change, on the thread that made it.
  [[nodiscard]] virtual base::Subscription observeChanges(std::function<void()> observer) = 0;
};

}  // namespace pallimo::ports
