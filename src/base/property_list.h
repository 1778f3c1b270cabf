// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "base/bytes.h"

namespace pallimo::base {

class PropertyList;

/// The entries of a property-list dictionary in document order; keys are unique (a repeated key
/// of the document leaves its last value).
using PropertyListDictionary = std::vector<std::pair<std::string, PropertyList>>;
using PropertyListArray = std::vector<PropertyList>;

/// A date of a property list. Nothing reads it; it is kept so that no value is lost.
struct PropertyListDate {
  double secondsSince2001 = 0;  ///< seconds since 2001-01-01 00:00 UTC
  bool operator==(const PropertyListDate&) const = default;
};

/// One property-list value: dictionary, array, string, number, boolean, data or date.
///
/// A number is one kind, written as an integer or as a real; it reads as a double. Integers keep
/// their 64 bits. A boolean is not a number.
class PropertyList {
 public:
  PropertyList();  ///< an empty dictionary
  explicit PropertyList(PropertyListDictionary dictionary);
  explicit PropertyList(PropertyListArray array);
  explicit PropertyList(std::string text);
  explicit PropertyList(double real);
  explicit PropertyList(std::int64_t integer);
  explicit PropertyList(std::uint64_t integer);
  explicit PropertyList(bool boolean);
  explicit PropertyList(Bytes data);
  explicit PropertyList(PropertyListDate date);

  /// Each returns nullptr when the value is of another kind.
  const PropertyListDictionary* dictionary() const;
  const PropertyListArray* array() const;
  const std::string* text() const;
  const bool* boolean() const;
  const Bytes* data() const;
  const PropertyListDate* date() const;

  bool isNumber() const;
  /// The number as a double; `otherwise` when the value is not a number.
  double numberOr(double otherwise) const;
  /// The number when it is exactly integral and fits 64 signed bits (3 and 3.0 do; 2.5, nan,
  /// infinities and texts do not); false otherwise and `out` is untouched.
  bool readInteger(std::int64_t& out) const;

  /// The dictionary's value under `key`; nullptr when absent or when this is no dictionary.
  const PropertyList* find(std::string_view key) const;

  bool operator==(const PropertyList& other) const;

 private:
  std::variant<PropertyListDictionary, PropertyListArray, std::string, double, std::int64_t,
               std::uint64_t, bool, Bytes, PropertyListDate>
      value_;
};

}  // namespace pallimo::base
