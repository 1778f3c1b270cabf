// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/macos/system_values.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace pallimo::adapters::macos {
namespace {

using base::PropertyList;

std::optional<std::string> textFrom(CFStringRef string) {
  const CFIndex room =
      CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
  std::vector<char> buffer(static_cast<std::size_t>(room));
  if (!CFStringGetCString(string, buffer.data(), room, kCFStringEncodingUTF8)) {
    return std::nullopt;  // half of a character, which UTF-8 has no form for
  }
  return std::string(buffer.data());
}

PropertyList numberFrom(CFNumberRef number) {
  std::int64_t integer = 0;
  if (!CFNumberIsFloatType(number) && CFNumberGetValue(number, kCFNumberSInt64Type, &integer)) {
    return PropertyList(integer);
  }
  double real = 0;
  CFNumberGetValue(number, kCFNumberFloat64Type, &real);
  return PropertyList(real);
}

PropertyList arrayFrom(CFArrayRef array) {
  base::PropertyListArray values;
  for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
    if (auto value = propertyListFrom(CFArrayGetValueAtIndex(array, i))) values.push_back(*value);
  }
  return PropertyList(std::move(values));
}

PropertyList dictionaryFrom(CFDictionaryRef dictionary) {
  const auto count = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
  std::vector<const void*> keys(count);
  std::vector<const void*> values(count);
  CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
  base::PropertyListDictionary entries;
  for (std::size_t i = 0; i < count; ++i) {
    if (CFGetTypeID(keys[i]) != CFStringGetTypeID()) continue;
    auto name = textFrom(static_cast<CFStringRef>(keys[i]));
    auto value = propertyListFrom(values[i]);
    if (name && value) entries.emplace_back(std::move(*name), std::move(*value));
  }
  return PropertyList(std::move(entries));
}

}  // namespace

CFRef<CFStringRef> cfText(std::string_view text) {
  return CFRef(
      CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                              static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

std::optional<PropertyList> propertyListFrom(CFTypeRef value) {
  if (value == nullptr) return std::nullopt;
  const CFTypeID type = CFGetTypeID(value);
  if (type == CFDictionaryGetTypeID()) return dictionaryFrom(static_cast<CFDictionaryRef>(value));
  if (type == CFArrayGetTypeID()) return arrayFrom(static_cast<CFArrayRef>(value));
  if (type == CFNumberGetTypeID()) return numberFrom(static_cast<CFNumberRef>(value));
  if (type == CFDataGetTypeID()) {
    const auto data = static_cast<CFDataRef>(value);
    const UInt8* const bytes = CFDataGetBytePtr(data);
    return PropertyList(base::Bytes(bytes, bytes + CFDataGetLength(data)));
  }
  if (type == CFBooleanGetTypeID()) {
    return PropertyList(CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0);
  }
  if (type == CFStringGetTypeID()) {
    if (auto text = textFrom(static_cast<CFStringRef>(value))) return PropertyList(*text);
  }
  return std::nullopt;
}
}  // namespace pallimo::adapters::macos
