// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <mach/mach.h>

#include <optional>
#include <string_view>
#include <utility>

#include "base/property_list.h"

// What the adapters of this folder share: owners of the system's references, and the system's
// values as the program's.

namespace pallimo::adapters::macos {

/// Owns one reference to a CoreFoundation object, or none. What a function with "Create" or "Copy"
/// in its name returns goes into one of these; what one with "Get" returns is only borrowed.
template <typename Reference>
class CFRef {
 public:
  CFRef() = default;
  explicit CFRef(Reference owned) : reference_(owned) {}
  ~CFRef() {
    if (reference_ != nullptr) CFRelease(reference_);
  }
  CFRef(CFRef&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}
  CFRef& operator=(CFRef&& other) noexcept {
    std::swap(reference_, other.reference_);
    return *this;
  }

  Reference get() const { return reference_; }
  explicit operator bool() const { return reference_ != nullptr; }

 private:
  Reference reference_ = nullptr;
};

/// The text as the system's own; none when it is not UTF-8.
CFRef<CFStringRef> cfText(std::string_view text);

/// A copy of the system's value, which stays borrowed. Nothing for none and for a kind that a
/// property list lacks, dates included, which nobody reads; in a dictionary or an array such a
/// value is left out, and so is a key that is no text. A boolean stays a boolean; a number too
/// large for 64 bits becomes a real.
std::optional<base::PropertyList> propertyListFrom(CFTypeRef value);

/// Owns one reference to the host's port. Every call of mach_host_self() adds one, so that it is
/// called once an object and not once a sample.
struct HostPort {
  HostPort() = default;
  ~HostPort() { mach_port_deallocate(mach_task_self(), name); }
  HostPort(const HostPort&) = delete;

  const mach_port_t name = mach_host_self();
};

/// What the kernel maps into this task to answer a call; empty until the call fills it in, and
/// freed in every case, which for nothing is allowed.
struct KernelWords {
  KernelWords() = default;
  ~KernelWords() {
    vm_deallocate(mach_task_self(), reinterpret_cast<vm_address_t>(words), count * sizeof *words);
  }
  KernelWords(const KernelWords&) = delete;
  KernelWords& operator=(const KernelWords&) = delete;

  integer_t* words = nullptr;
  mach_msg_type_number_t count = 0;
};

}  // namespace pallimo::adapters::macos
