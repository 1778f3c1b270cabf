// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QObject>
#include <QSettings>
#include <map>
#include <memory>

#include "base/handler_list.h"
#include "base/mutex.h"
#include "ports/user_defaults.h"

namespace pallimo::adapters::qt {

/// The user's settings in a file (INI), or in the system's own store. Made and destroyed on the
/// main thread.
///
/// They are read once, when this is made. A change is seen by every reader at once, is written
/// from the main thread soon after, and at the latest when this is destroyed.
class QtUserDefaults final : public ports::UserDefaults {
 public:
  explicit QtUserDefaults(const std::string& file);
  /// The store's domain is the organisation's, reversed, and the application ("com.maker.app").
  QtUserDefaults(const std::string& organisation, const std::string& application);
  ~QtUserDefaults() override;

  bool contains(std::string_view key) const override;
  bool boolForKey(std::string_view key) const override;
  std::int64_t integerForKey(std::string_view key) const override;
  double doubleForKey(std::string_view key) const override;
  std::optional<std::string> textForKey(std::string_view key) const override;

  void setBool(std::string_view key, bool value) override;
  void setInteger(std::string_view key, std::int64_t value) override;
  void setText(std::string_view key, std::string_view value) override;
  void remove(std::string_view key) override;

  [[nodiscard]] base::Subscription observeChanges(std::function<void()> observer) override;

 private:
  using Values = std::map<std::string, std::string, std::less<>>;

  void load();
  void store();
  void changed();

  // Owned by the main thread.
  QSettings settings_;
  Values stored_;  ///< what settings_ holds
  QObject context_;

  const std::shared_ptr<base::HandlerList> observers_ = std::make_shared<base::HandlerList>();

  mutable base::Mutex mutex_;
  Values values_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::adapters::qt
