// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "base/handler_list.h"
#include "base/mutex.h"
#include "base/text_format.h"
#include "ports/user_defaults.h"

namespace pallimo::fakes {

/// Settings in memory, converted as leniently as the system's own store does. Every write is
/// announced, also one that changes nothing. Any thread.
class MemoryUserDefaults final : public ports::UserDefaults {
 public:
  /// Runs inside every read, before it, on the reader's thread. Set before use.
  std::function<void(std::string_view key)> onRead;

  bool contains(std::string_view key) const override { return find(key).has_value(); }

  bool boolForKey(std::string_view key) const override {
    const auto value = find(key);
    if (!value) return false;
    if (const auto* text = std::get_if<std::string>(&*value)) {
      return *text == "YES" || *text == "yes" || *text == "true" || numberIn(*text) != 0;
    }
    return number(*value) != 0;
  }

  std::int64_t integerForKey(std::string_view key) const override {
    const auto value = find(key);
    if (!value) return 0;
    if (const auto* integer = std::get_if<std::int64_t>(&*value)) return *integer;
    const double real = number(*value);
    constexpr double kLimit = 9223372036854775808.0;  // 2^63
    return real >= -kLimit && real < kLimit ? static_cast<std::int64_t>(real) : 0;
  }

  double doubleForKey(std::string_view key) const override {
    const auto value = find(key);
    return value ? number(*value) : 0;
  }

  std::optional<std::string> textForKey(std::string_view key) const override {
    const auto value = find(key);
    if (!value) return std::nullopt;
    if (const auto* text = std::get_if<std::string>(&*value)) return *text;
    if (const auto* integer = std::get_if<std::int64_t>(&*value)) return std::to_string(*integer);
    if (const auto* boolean = std::get_if<bool>(&*value)) return *boolean ? "1" : "0";
    const double real = std::get<double>(*value);
    return base::formatFixed(real, std::trunc(real) == real ? 0 : 6);
  }

  void setBool(std::string_view key, bool value) override { store(key, value); }
  void setInteger(std::string_view key, std::int64_t value) override { store(key, value); }
  /// As somebody stores it by hand; the app writes no number with a fraction.
  void setDouble(std::string_view key, double value) { store(key, value); }
  void setText(std::string_view key, std::string_view value) override {
    store(key, std::string(value));
  }

  void remove(std::string_view key) override {
    {
      base::MutexLock lock(mutex_);
      if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
    }
    observers_->callAll();
  }

  base::Subscription observeChanges(std::function<void()> observer) override {
    return observers_->add(std::move(observer));
  }

 private:
  using Value = std::variant<bool, std::int64_t, double, std::string>;

  static double numberIn(const std::string& text) {
    const base::CLocaleScope scope;
    return std::strtod(text.c_str(), nullptr);
  }

  static double number(const Value& value) {
    if (const auto* boolean = std::get_if<bool>(&value)) return *boolean ? 1 : 0;
    if (const auto* integer = std::get_if<std::int64_t>(&value)) {
      return static_cast<double>(*integer);
    }
    if (const auto* real = std::get_if<double>(&value)) return *real;
    return numberIn(std::get<std::string>(value));
  }

  std::optional<Value> find(std::string_view key) const {
    if (onRead) onRead(key);
    base::MutexLock lock(mutex_);
    const auto found = values_.find(key);
    if (found == values_.end()) return std::nullopt;
    return found->second;
  }

  void store(std::string_view key, Value value) {
    {
      base::MutexLock lock(mutex_);
      values_[std::string(key)] = std::move(value);
    }
    observers_->callAll();
  }

  mutable base::Mutex mutex_;
  std::map<std::string, Value, std::less<>> values_ PALLIMO_GUARDED_BY(mutex_);
  const std::shared_ptr<base::HandlerList> observers_ = std::make_shared<base::HandlerList>();
};

}  // namespace pallimo::fakes
