// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/property_list.h"

#include <cmath>
#include <limits>

namespace pallimo::base {

PropertyList::PropertyList() = default;
PropertyList::PropertyList(PropertyListDictionary dictionary) : value_(std::move(dictionary)) {}
PropertyList::PropertyList(PropertyListArray array) : value_(std::move(array)) {}
PropertyList::PropertyList(std::string text) : value_(std::move(text)) {}
PropertyList::PropertyList(double real) : value_(real) {}
PropertyList::PropertyList(std::int64_t integer) : value_(integer) {}
PropertyList::PropertyList(std::uint64_t integer) : value_(integer) {}
PropertyList::PropertyList(bool boolean) : value_(boolean) {}
PropertyList::PropertyList(Bytes data) : value_(std::move(data)) {}
PropertyList::PropertyList(PropertyListDate date) : value_(date) {}

const PropertyListDictionary* PropertyList::dictionary() const {
  return std::get_if<PropertyListDictionary>(&value_);
}
const PropertyListArray* PropertyList::array() const {
  return std::get_if<PropertyListArray>(&value_);
}
const std::string* PropertyList::text() const { return std::get_if<std::string>(&value_); }
const bool* PropertyList::boolean() const { return std::get_if<bool>(&value_); }
const Bytes* PropertyList::data() const { return std::get_if<Bytes>(&value_); }
const PropertyListDate* PropertyList::date() const {
  return std::get_if<PropertyListDate>(&value_);
}

bool PropertyList::isNumber() const {
  return std::holds_alternative<double>(value_) || std::holds_alternative<std::int64_t>(value_) ||
         std::holds_alternative<std::uint64_t>(value_);
}

double PropertyList::numberOr(double otherwise) const {
  if (const auto* real = std::get_if<double>(&value_)) return *real;
  if (const auto* integer = std::get_if<std::int64_t>(&value_)) {
    return static_cast<double>(*integer);
  }
  if (const auto* integer = std::get_if<std::uint64_t>(&value_)) {
    return static_cast<double>(*integer);
  }
  return otherwise;
}

bool PropertyList::readInteger(std::int64_t& out) const {
  if (const auto* integer = std::get_if<std::int64_t>(&value_)) {
    out = *integer;
    return true;
  }
  if (const auto* integer = std::get_if<std::uint64_t>(&value_)) {
    if (*integer > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      return false;
    }
    out = static_cast<std::int64_t>(*integer);
    return true;
  }
  const auto* real = std::get_if<double>(&value_);
  // 2^63 is exact as a double; every integral double below it fits. NaN fails each comparison.
  constexpr double kLimit = 9223372036854775808.0;
  if (real == nullptr || !(*real >= -kLimit && *real < kLimit)) return false;
  if (std::trunc(*real) != *real) return false;
  out = static_cast<std::int64_t>(*real);
  return true;
}

const PropertyList* PropertyList::find(std::string_view key) const {
  const auto* entries = dictionary();
  if (entries == nullptr) return nullptr;
  for (const auto& [name, value] : *entries) {
    if (name == key) return &value;
  }
  return nullptr;
}

// Written out: Clang 16 crashes on a defaulted comparison of this recursive variant.
bool PropertyList::operator==(const PropertyList& other) const { return value_ == other.value_; }

}  // namespace pallimo::base
