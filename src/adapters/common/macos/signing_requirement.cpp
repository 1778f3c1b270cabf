// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/signing_requirement.h"

#include <Security/Security.h>

namespace pallimo::adapters::common {

bool isSigningRequirement(std::string_view text) {
  const CFStringRef wanted =
      CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(text.data()),
                              static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false);
  if (wanted == nullptr) return false;
  SecRequirementRef requirement = nullptr;
  const OSStatus status = SecRequirementCreateWithString(wanted, kSecCSDefaultFlags, &requirement);
  CFRelease(wanted);
  if (requirement != nullptr) CFRelease(requirement);
  return status == 0;
}

}  // namespace pallimo::adapters::common
