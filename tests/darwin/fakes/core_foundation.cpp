// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The fakes of CoreFoundation's functions.

#include <CoreFoundation/CoreFoundation.h>

#include <cmath>
#include <cstring>
#include <string>

#include "base/utf8.h"
#include "darwin/fakes/fake_mac.h"

using pallimo::base::Bytes;
using pallimo::darwin::FakeArray;
using pallimo::darwin::FakeDictionary;
using pallimo::darwin::FakeMac;
using pallimo::darwin::FakeObject;
using pallimo::darwin::FakeThing;
using pallimo::darwin::mac;

namespace {

constexpr CFTypeID kStringType = 1;
constexpr CFTypeID kNumberType = 2;
constexpr CFTypeID kBooleanType = 3;
constexpr CFTypeID kDataType = 4;
constexpr CFTypeID kArrayType = 5;
constexpr CFTypeID kDictionaryType = 6;
constexpr CFTypeID kOtherType = 7;

struct TypeOf {
  CFTypeID operator()(const std::string&) const { return kStringType; }
  CFTypeID operator()(std::int64_t) const { return kNumberType; }
  CFTypeID operator()(double) const { return kNumberType; }
  CFTypeID operator()(bool) const { return kBooleanType; }
  CFTypeID operator()(const Bytes&) const { return kDataType; }
  CFTypeID operator()(const FakeArray&) const { return kArrayType; }
  CFTypeID operator()(const FakeDictionary&) const { return kDictionaryType; }
  CFTypeID operator()(const FakeThing&) const { return kOtherType; }
};

template <typename Reference>
Reference as(const FakeObject* object) {
  const void* const pointer = object;
  return static_cast<Reference>(const_cast<void*>(pointer));
}

/// A text with this in it stands for one that UTF-8 has no form for.
constexpr const char* kHalfACharacter = "\x01half";

CFStringRef stringOf(std::string text, CFStringEncoding encoding, const char* function) {
  mac().expect(encoding == kCFStringEncodingUTF8, "a text is not made from UTF-8");
  if (mac().fails(function)) return nullptr;
  if (pallimo::base::repairedUtf8(text) != text) return nullptr;
  return as<CFStringRef>(mac().objects.make(std::move(text)));
}

/// Whether nothing is lost; `out` is written in any case.
Boolean writeInteger(const FakeObject& number, std::int64_t& out) {
  if (const auto* integer = std::get_if<std::int64_t>(&number.value)) {
    out = *integer;
    return true;
  }
  const auto* real = std::get_if<double>(&number.value);
  if (real == nullptr || !(std::abs(*real) < 9.2e18)) {
    out = 0;
    return false;
  }
  out = static_cast<std::int64_t>(*real);
  return static_cast<double>(out) == *real;
}

FakeDictionary& entriesOf(CFMutableDictionaryRef dictionary, const char* function) {
  static FakeDictionary none;
  FakeObject* object = mac().objects.living(dictionary, function);
  auto* entries = object == nullptr ? nullptr : std::get_if<FakeDictionary>(&object->value);
  if (entries != nullptr) return *entries;
  none.clear();
  return none;
}

}  // namespace

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};

CFTypeID CFGetTypeID(CFTypeRef value) {
  const FakeObject* object = mac().objects.living(value, "CFGetTypeID");
  return object == nullptr ? 0 : std::visit(TypeOf{}, object->value);
}
CFTypeRef CFRetain(CFTypeRef value) {
  mac().objects.retain(value, "CFRetain");
  return value;
}
void CFRelease(CFTypeRef value) { mac().objects.release(value, "CFRelease"); }

CFTypeID CFArrayGetTypeID() { return kArrayType; }
CFTypeID CFBooleanGetTypeID() { return kBooleanType; }
CFTypeID CFDataGetTypeID() { return kDataType; }
CFTypeID CFDictionaryGetTypeID() { return kDictionaryType; }
CFTypeID CFNumberGetTypeID() { return kNumberType; }
CFTypeID CFStringGetTypeID() { return kStringType; }

CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value) {
  mac().expect(allocator == nullptr, "a number of another allocator");
  mac().expect(type == kCFNumberSInt32Type, "a number that is not made as 32 signed bits");
  if (mac().fails("CFNumberCreate")) return nullptr;
  std::int32_t number = 0;
  std::memcpy(&number, value, sizeof number);
  const FakeObject* made = mac().objects.make(std::int64_t{number});
  mac().objects.living(made, "CFNumberCreate")->numberType = type;
  return as<CFNumberRef>(made);
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  const FakeObject* object = mac().objects.living(number, "CFNumberGetValue");
  if (object == nullptr) return false;
  mac().expect(std::visit(TypeOf{}, object->value) == kNumberType,
               "CFNumberGetValue of what is no number");
  std::int64_t integer = 0;
  const bool isWhole = writeInteger(*object, integer);
  if (type == kCFNumberSInt64Type) {
    std::memcpy(value, &integer, sizeof integer);
    return isWhole;
  }
  mac().expect(type == kCFNumberFloat64Type, "CFNumberGetValue as an unexpected type");
  const auto* real = std::get_if<double>(&object->value);
  const double converted = real == nullptr ? static_cast<double>(integer) : *real;
  std::memcpy(value, &converted, sizeof converted);
  return true;
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
  const FakeObject* object = mac().objects.living(number, "CFNumberIsFloatType");
  return object != nullptr && std::holds_alternative<double>(object->value);
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  return mac().objects.read<bool>(boolean, "CFBooleanGetValue");
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
  mac().expect(allocator == nullptr && capacity == 0, "a dictionary with a limit");
  mac().expect(keyCallBacks == &kCFTypeDictionaryKeyCallBacks &&
                   valueCallBacks == &kCFTypeDictionaryValueCallBacks,
               "a dictionary that does not retain what it holds");
  if (mac().fails("CFDictionaryCreateMutable")) return nullptr;
  return as<CFMutableDictionaryRef>(mac().objects.make(FakeDictionary{}));
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  const FakeObject* const newKey = mac().objects.living(key, "CFDictionarySetValue, key");
  const FakeObject* const newValue = mac().objects.living(value, "CFDictionarySetValue, value");
  if (newKey == nullptr || newValue == nullptr) return;
  CFRetain(key);
  CFRetain(value);
  entriesOf(dictionary, "CFDictionarySetValue").emplace_back(newKey, newValue);
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  return static_cast<CFIndex>(
      mac().objects.read<FakeDictionary>(dictionary, "CFDictionaryGetCount").size());
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                  const void** values) {
  for (const auto& [key, value] :
       mac().objects.read<FakeDictionary>(dictionary, "CFDictionaryGetKeysAndValues")) {
    *keys++ = key;
    *values++ = value;
  }
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  return static_cast<CFIndex>(mac().objects.read<FakeArray>(array, "CFArrayGetCount").size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  const auto& values = mac().objects.read<FakeArray>(array, "CFArrayGetValueAtIndex");
  const bool isInside = index >= 0 && index < static_cast<CFIndex>(values.size());
  mac().expect(isInside, "CFArrayGetValueAtIndex past the end");
  return isInside ? values[static_cast<std::size_t>(index)] : nullptr;
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text,
                                      CFStringEncoding encoding) {
  mac().expect(allocator == nullptr, "a text of another allocator");
  return stringOf(text, encoding, "CFStringCreateWithCString");
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
  mac().expect(allocator == nullptr && !isExternalRepresentation, "a text with a byte order");
  return stringOf(std::string(bytes, bytes + count), encoding, "CFStringCreateWithBytes");
}

// In UTF-16, of which there are never more units than of UTF-8.
CFIndex CFStringGetLength(CFStringRef string) {
  const auto& text = mac().objects.read<std::string>(string, "CFStringGetLength");
  CFIndex units = 0;
  for (const char byte : text) {
    const auto unit = static_cast<unsigned char>(byte);
    if ((unit & 0xC0) != 0x80) units += unit >= 0xF0 ? 2 : 1;
  }
  return units;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  mac().expect(encoding == kCFStringEncodingUTF8, "a text is not read as UTF-8");
  return 3 * length;
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size,
                           CFStringEncoding encoding) {
  mac().expect(encoding == kCFStringEncodingUTF8, "a text is not read as UTF-8");
  const auto& text = mac().objects.read<std::string>(string, "CFStringGetCString");
  const bool fits = static_cast<CFIndex>(text.size()) < size;
  mac().expect(fits, "CFStringGetCString into too small a buffer");
  if (!fits || text == kHalfACharacter) return false;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return true;
}

CFIndex CFDataGetLength(CFDataRef data) {
  return static_cast<CFIndex>(mac().objects.read<Bytes>(data, "CFDataGetLength").size());
}
const UInt8* CFDataGetBytePtr(CFDataRef data) {
  return mac().objects.read<Bytes>(data, "CFDataGetBytePtr").data();
}

CFBundleRef CFBundleGetMainBundle() {
  if (mac().fails("CFBundleGetMainBundle")) return nullptr;
  return as<CFBundleRef>(mac().objects.makeConstant(FakeThing{"main bundle", nullptr}));
}

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
  const auto& thing = mac().objects.read<FakeThing>(bundle, "CFBundleCopyBundleURL");
  mac().expect(thing.description == "main bundle", "the URL of what is no bundle");
  if (mac().fails("CFBundleCopyBundleURL")) return nullptr;
  return as<CFURLRef>(mac().objects.make(FakeThing{"url /Applications/Pallimo.app", nullptr}));
}

CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef allocator, CFURLRef url,
                                               CFStringRef component, Boolean isDirectory) {
  mac().expect(allocator == nullptr && !isDirectory, "a URL of a folder");
  const auto& thing = mac().objects.read<FakeThing>(url, "CFURLCreateCopyAppending");
  const auto& text = mac().objects.read<std::string>(component, "CFURLCreateCopyAppending");
  mac().expect(!text.empty(), "a URL with an empty component");
  if (mac().fails("CFURLCreateCopyAppendingPathComponent")) return nullptr;
  return as<CFURLRef>(mac().objects.make(FakeThing{thing.description + "/" + text, nullptr}));
}

CFDictionaryRef CFBundleCopyInfoDictionaryForURL(CFURLRef url) {
  const auto& thing = mac().objects.read<FakeThing>(url, "CFBundleCopyInfoDictionaryForURL");
  if (mac().fails("CFBundleCopyInfoDictionaryForURL")) return nullptr;
  const auto found = mac().infoDictionaries.find(thing.description.substr(4));
  if (found == mac().infoDictionaries.end()) return nullptr;
  return as<CFDictionaryRef>(mac().objects.makeFrom(found->second));
}

}  // extern "C"
