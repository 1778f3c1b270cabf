// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/tree_conversion.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace pallimo::adapters::libplist {

namespace {

using base::PropertyList;
using base::PropertyListArray;
using base::PropertyListDictionary;

// libplist hands out iterators and texts of malloc.
struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

/// Whether the integer was written with a minus. Only the printed form tells -5 from 2^64 - 5.
bool isNegative(plist_t node) {
  char* text = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(node, &text, &length);
  const std::unique_ptr<char, Free> owner(text);
  return text != nullptr &&
         std::string_view(text, length).find("<integer>-") != std::string_view::npos;
}

std::string textOf(plist_t node) {
  std::uint64_t length = 0;
  const char* text = plist_get_string_ptr(node, &length);
  return text == nullptr ? std::string() : std::string(text, length);
}

std::string keyOf(plist_t node) {
  char* text = nullptr;
  plist_get_key_val(node, &text);
  const std::unique_ptr<char, Free> owner(text);
  return text == nullptr ? std::string() : std::string(text);
}

base::Bytes dataOf(plist_t node) {
  std::uint64_t length = 0;
  const char* bytes = plist_get_data_ptr(node, &length);
  return bytes == nullptr ? base::Bytes() : base::Bytes(bytes, bytes + length);
}

base::PropertyListDate dateOf(plist_t node) {
  std::int32_t seconds = 0;
  std::int32_t microseconds = 0;
  plist_get_date_val(node, &seconds, &microseconds);
  return {seconds + microseconds / 1e6};
}

constexpr std::string_view kReferenceKey = "CF$UID";

PropertyListDictionary referenceOf(plist_t node) {
  std::uint64_t value = 0;
  plist_get_uid_val(node, &value);
  PropertyListDictionary dictionary;
  dictionary.emplace_back(kReferenceKey, PropertyList(static_cast<std::int64_t>(value)));
  return dictionary;
}

template <typename Emplace>
void convertInteger(plist_t node, Emplace emplace) {
  std::uint64_t value = 0;
  plist_get_uint_val(node, &value);
  const auto asSigned = static_cast<std::int64_t>(value);
  if (asSigned >= 0 || isNegative(node)) {
    emplace(asSigned);
  } else {
    emplace(value);
  }
}

/// Calls `emplace` with what makes the node's value, so that it is made where it is to stay: moving
/// thousands of values would be a fifth of the conversion.
template <typename Emplace>
bool convertLeaf(plist_t node, plist_type type, Emplace emplace) {
  switch (type) {
    case PLIST_UINT:
      convertInteger(node, emplace);
      return true;
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      emplace(value);
      return true;
    }
    case PLIST_BOOLEAN: {
      std::uint8_t value = 0;
      plist_get_bool_val(node, &value);
      emplace(value != 0);
      return true;
    }
    case PLIST_STRING:
      emplace(textOf(node));
      return true;
    case PLIST_KEY:
      emplace(keyOf(node));
      return true;
    case PLIST_DATE:
      emplace(dateOf(node));
      return true;
    case PLIST_DATA:
      emplace(dataOf(node));
      return true;
    case PLIST_UID:
      emplace(referenceOf(node));
      return true;
    default:
      return false;
  }
}

/// Of each group of equal keys keeps the first place and the last value.
void mergeRepeatedKeys(PropertyListDictionary& entries) {
  std::vector<std::size_t> byKey(entries.size());
  std::iota(byKey.begin(), byKey.end(), std::size_t{0});
  std::stable_sort(byKey.begin(), byKey.end(), [&entries](std::size_t left, std::size_t right) {
    return entries[left].first < entries[right].first;
  });
  std::vector<bool> isSuperseded(entries.size(), false);
  for (std::size_t i = 0, first = 0; i < byKey.size(); ++i) {
    if (i == first) continue;
    if (entries[byKey[i]].first != entries[byKey[first]].first) {
      first = i;
      continue;
    }
    entries[byKey[first]].second = std::move(entries[byKey[i]].second);
    isSuperseded[byKey[i]] = true;
  }
  std::size_t kept = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (isSuperseded[i]) continue;
    if (kept != i) entries[kept] = std::move(entries[i]);
    ++kept;
  }
  entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(kept), entries.end());
}

bool hasKey(const PropertyListDictionary& entries, std::string_view key) {
  return std::any_of(entries.begin(), entries.end(),
                     [key](const auto& entry) { return entry.first == key; });
}

/// The key of a dictionary's item. libplist gives out copies of its keys and nothing else, one
/// allocation each; comparing is cheaper than that.
std::string keyOfItem(plist_t item, const std::string* guess) {
  const plist_t key = plist_dict_item_get_key(item);
  if (guess != nullptr && plist_key_val_compare(key, guess->c_str()) == 0) return *guess;
  return keyOf(key);
}

/// A container under construction.
struct Level {
  Level(plist_t container, const ports::Wanted* lookedAt)
      : node(container),
        wanted(lookedAt),
        isDictionary(plist_get_node_type(container) == PLIST_DICT) {
    void* fresh = nullptr;
    if (isDictionary) {
      entries.reserve(plist_dict_get_size(node));
      plist_dict_new_iter(node, &fresh);
    } else {
      items.reserve(plist_array_get_size(node));
      plist_array_new_iter(node, &fresh);
    }
    iterator.reset(fresh);
  }

  plist_t nextItem() {
    plist_t item = nullptr;
    if (isDictionary) {
      plist_dict_next_item(node, iterator.get(), nullptr, &item);
    } else {
      plist_array_next_item(node, iterator.get(), &item);
    }
    return item;
  }

  plist_t node;
  const ports::Wanted* wanted;  ///< of its entries, or of those of its items
  bool isDictionary;
  std::unique_ptr<void, Free> iterator;
  PropertyListDictionary entries;
  PropertyListArray items;
  std::string key;                             ///< of the dictionary's item that is being converted
  const ports::Wanted* wantedBelow = nullptr;  ///< of that item
  bool mayRepeat = false;                      ///< a key may be there twice
  /// A dictionary that probably has the same keys: the entries of an array are mostly alike.
  const PropertyListDictionary* model = nullptr;
};

/// Without recursion: a document may be nested deeper than a thread's stack is high.
class Conversion {
 public:
  explicit Conversion(const ports::Wanted& wanted) : wanted_(wanted) {}

  std::optional<PropertyList> run(plist_t root) {
    levels_.reserve(16);
    if (!take(root)) return std::nullopt;
    while (!levels_.empty()) {
      const plist_t item = levels_.back().nextItem();
      if (item == nullptr) {
        finishLevel();
      } else {
        if (levels_.back().isDictionary && !readKey(item)) continue;
        if (!take(item)) return std::nullopt;
      }
    }
    return std::move(result_);
  }

 private:
  bool take(plist_t node) {
    const plist_type type = plist_get_node_type(node);
    if (type == PLIST_UID && !ports::wantedBelow(*wantedOfNext(), kReferenceKey)) {
      put(PropertyListDictionary());  // a dictionary of which nothing is wanted
      return true;
    }
    if (type != PLIST_DICT && type != PLIST_ARRAY) {
      return convertLeaf(node, type, [this](auto value) { put(std::move(value)); });
    }
    const PropertyListDictionary* model = nullptr;
    if (!levels_.empty() && !levels_.back().items.empty()) {
      model = levels_.back().items.back().dictionary();
    }
    levels_.emplace_back(node, wantedOfNext()).model = model;
    return true;
  }

  const ports::Wanted* wantedOfNext() const {
    if (levels_.empty()) return &wanted_;
    const Level& level = levels_.back();
    return level.isDictionary ? level.wantedBelow : level.wanted;
  }

  /// False when the item is to be left out.
  bool readKey(plist_t item) {
    // Up to this size comparing each pair of keys is quicker than sorting them.
    constexpr std::size_t kFewKeys = 64;
    Level& level = levels_.back();
    const std::size_t index = level.entries.size();
    const bool hasGuess = level.model != nullptr && index < level.model->size();
    level.key = keyOfItem(item, hasGuess ? &(*level.model)[index].first : nullptr);
    level.wantedBelow = ports::wantedBelow(*level.wanted, level.key);
    if (level.wantedBelow == nullptr) return false;
    level.mayRepeat = level.mayRepeat || index >= kFewKeys || hasKey(level.entries, level.key);
    return true;
  }

  void finishLevel() {
    Level level = std::move(levels_.back());
    levels_.pop_back();
    if (level.mayRepeat) mergeRepeatedKeys(level.entries);
    if (level.isDictionary) {
      put(std::move(level.entries));
    } else {
      put(std::move(level.items));
    }
  }

  /// Makes a value of `content` in the innermost container.
  template <typename Content>
  void put(Content content) {
    if (levels_.empty()) {
      result_.emplace(std::move(content));
    } else if (Level& level = levels_.back(); level.isDictionary) {
      level.entries.emplace_back(std::piecewise_construct,
                                 std::forward_as_tuple(std::move(level.key)),
                                 std::forward_as_tuple(std::move(content)));
    } else {
      level.items.emplace_back(std::move(content));
    }
  }

  const ports::Wanted& wanted_;
  std::vector<Level> levels_;
  std::optional<PropertyList> result_;
};

}  // namespace

std::optional<PropertyList> propertyListOf(plist_t node, const ports::Wanted& wanted) {
  return Conversion(wanted).run(node);
}

}  // namespace pallimo::adapters::libplist
