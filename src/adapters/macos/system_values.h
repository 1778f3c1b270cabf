// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>

#include "base/property_list.h"

// What the adapters of this folder share: owners of the system's references, and the system's
// values as the program's.

namespace pallimo::adapters::macos {

struct CFReleaser {
  void operator()(CFTypeRef owned) const { CFRelease(owned); }
};

/// Owns one reference to a CoreFoundation object, or none. What a function with "Create" or "Copy"
/// in its name returns goes into one of these; what one with "Get" returns is only borrowed.
template <typename Reference>
struct CFRef : std::unique_ptr<std::remove_pointer_t<Reference>, CFReleaser> {
  CFRef() = default;
  explicit CFRef(Reference owned) : CFRef::unique_ptr(owned) {}
};

/// The text as the system's own; none when it is not UTF-8.
CFRef<CFStringRef> cfText(std::string_view text);

/// A copy of the system's value, which stays borrowed. Nothing for none and for a kind that a
/// property list lacks, dates included, which nobody reads; in a dictionary or an array such a
/// value is left out, and so is a key that is no text. A boolean stays a boolean; a number too
/// large for 64 bits becomes a real.
std::optional<base::PropertyList> propertyListFrom(CFTypeRef value);

}  // namespace pallimo::adapters::macos
