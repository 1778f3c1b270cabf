// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

#include "base/property_list.h"
#include "ports/property_list_reader.h"

namespace pallimo::tests {

/// What a reader of the wanted entries alone should give of a value, made from the whole of it.
inline base::PropertyList onlyWanted(const base::PropertyList& value, const ports::Wanted& wanted) {
  if (const auto* array = value.array()) {
    base::PropertyListArray items;
    for (const base::PropertyList& item : *array) items.push_back(onlyWanted(item, wanted));
    return base::PropertyList(std::move(items));
  }
  const auto* dictionary = value.dictionary();
  if (dictionary == nullptr || wanted.empty()) return value;
  base::PropertyListDictionary entries;
  for (const auto& [key, inner] : *dictionary) {
    const auto entry = std::find_if(wanted.begin(), wanted.end(),
                                    [&key = key](const auto& one) { return one.key == key; });
    if (entry != wanted.end()) entries.emplace_back(key, onlyWanted(inner, entry->below));
  }
  return base::PropertyList(std::move(entries));
}

/// Whether they are equal, a number that is none being equal to another such.
inline bool isSame(const base::PropertyList& left, const base::PropertyList& right) {
  if (const auto* items = left.array()) {
    const auto* others = right.array();
    return others != nullptr &&
           std::equal(items->begin(), items->end(), others->begin(), others->end(), isSame);
  }
  if (const auto* entries = left.dictionary()) {
    const auto* others = right.dictionary();
    return others != nullptr && std::equal(entries->begin(), entries->end(), others->begin(),
                                           others->end(), [](const auto& one, const auto& other) {
                                             return one.first == other.first &&
                                                    isSame(one.second, other.second);
                                           });
  }
  return left == right || (left.isNumber() && right.isNumber() && std::isnan(left.numberOr(0)) &&
                           std::isnan(right.numberOr(0)));
}

inline bool isSame(const std::optional<base::PropertyList>& left,
                   const std::optional<base::PropertyList>& right) {
  return left && right ? isSame(*left, *right) : left.has_value() == right.has_value();
}

}  // namespace pallimo::tests
