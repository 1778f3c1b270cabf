// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "adapters/qt/settings_text.h"
#include "base/handler_list.h"
#include "ports/user_defaults.h"

namespace pallimo::fuzz {

/// Settings as QtUserDefaults keeps them, as texts, with the conversions that it uses, but without
/// Qt and its file. One thread.
class TextUserDefaults final : public ports::UserDefaults {
 public:
  bool contains(std::string_view key) const override { return values_.contains(key); }
  bool boolForKey(std::string_view key) const override {
    return adapters::qt::boolOfText(textOr(key));
  }
  std::int64_t integerForKey(std::string_view key) const override {
    return adapters::qt::integerOfText(textOr(key));
  }
  double doubleForKey(std::string_view key) const override {
    return adapters::qt::doubleOfText(textOr(key));
  }
  std::optional<std::string> textForKey(std::string_view key) const override {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
  }

  void setBool(std::string_view key, bool value) override {
    setText(key, adapters::qt::textOfBool(value));
  }
  void setInteger(std::string_view key, std::int64_t value) override {
    setText(key, adapters::qt::textOfInteger(value));
  }
  void setText(std::string_view key, std::string_view value) override {
    values_.insert_or_assign(std::string(key), std::string(value));
    observers_->callAll();
  }
  void remove(std::string_view key) override {
    if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
    observers_->callAll();
  }

  [[nodiscard]] base::Subscription observeChanges(std::function<void()> observer) override {
    return observers_->add(std::move(observer));
  }

 private:
  std::string textOr(std::string_view key) const { return textForKey(key).value_or(""); }

  std::map<std::string, std::string, std::less<>> values_;
  const std::shared_ptr<base::HandlerList> observers_ = std::make_shared<base::HandlerList>();
};

}  // namespace pallimo::fuzz
