// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_user_defaults.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <utility>

#include "adapters/qt/settings_text.h"

namespace pallimo::adapters::qt {

namespace {

QString toQt(const std::string& text) { return QString::fromStdString(text); }

/// Commas in a file written by hand make a list, in which the blanks around them are lost. A comma
/// and a blank is how people write; who means another text puts it in quotes, as this class does.
std::string textOf(const QVariant& value) {
  if (value.typeId() == QMetaType::QStringList)
    return value.toStringList().join(", ").toStdString();
  return value.toString().toStdString();
}

}  // namespace

QtUserDefaults::QtUserDefaults(const std::string& file)
    : settings_(toQt(file), QSettings::IniFormat) {
  load();
}

QtUserDefaults::QtUserDefaults(const std::string& organisation, const std::string& application)
    : settings_(QSettings::NativeFormat, QSettings::UserScope, toQt(organisation),
                toQt(application)) {
  // Else every program's settings would seem to be ours.
  settings_.setFallbacksEnabled(false);
  load();
}

QtUserDefaults::~QtUserDefaults() { store(); }

void QtUserDefaults::load() {
  for (const QString& key : settings_.allKeys()) {
    if (key.isEmpty()) continue;  // a damaged file has it, and nobody can ask for it
    stored_[key.toStdString()] = textOf(settings_.value(key));
  }
  base::MutexLock lock(mutex_);
  values_ = stored_;
}

bool QtUserDefaults::contains(std::string_view key) const { return textForKey(key).has_value(); }

bool QtUserDefaults::boolForKey(std::string_view key) const {
  return boolOfText(textForKey(key).value_or(""));
}

std::int64_t QtUserDefaults::integerForKey(std::string_view key) const {
  return integerOfText(textForKey(key).value_or(""));
}

double QtUserDefaults::doubleForKey(std::string_view key) const {
  return doubleOfText(textForKey(key).value_or(""));
}

std::optional<std::string> QtUserDefaults::textForKey(std::string_view key) const {
  base::MutexLock lock(mutex_);
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

void QtUserDefaults::setBool(std::string_view key, bool value) { setText(key, textOfBool(value)); }

void QtUserDefaults::setInteger(std::string_view key, std::int64_t value) {
  setText(key, textOfInteger(value));
}

void QtUserDefaults::setText(std::string_view key, std::string_view value) {
  {
    base::MutexLock lock(mutex_);
    values_[std::string(key)] = std::string(value);
  }
  changed();
}

void QtUserDefaults::remove(std::string_view key) {
  {
    base::MutexLock lock(mutex_);
    const auto found = values_.find(key);
    if (found == values_.end()) return;
    values_.erase(found);
  }
  changed();
}

base::Subscription QtUserDefaults::observeChanges(std::function<void()> observer) {
  return observers_->add(std::move(observer));
}

void QtUserDefaults::changed() {
  QMetaObject::invokeMethod(
      &context_, [this] { store(); }, Qt::QueuedConnection);
  observers_->callAll();
}

/// Writes what differs from the file; a QSettings is no place for two threads.
void QtUserDefaults::store() {
  Values values;
  {
    base::MutexLock lock(mutex_);
    values = values_;
  }
  for (const auto& [key, text] : values) {
    const auto written = stored_.find(key);
    if (written == stored_.end() || written->second != text) {
      settings_.setValue(toQt(key), toQt(text));
    }
  }
  for (const auto& entry : stored_) {
    if (values.count(entry.first) == 0) settings_.remove(toQt(entry.first));
  }
  stored_ = std::move(values);
}

}  // namespace pallimo::adapters::qt
