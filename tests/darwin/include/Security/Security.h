// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// See darwin_types.h.

#include "../CoreFoundation/CoreFoundation.h"
#include "Authorization.h"

PALLIMO_BEGIN_C

typedef uint32_t SecCSFlags;
typedef struct __SecRequirement* SecRequirementRef;

enum { kSecCSDefaultFlags = 0 };

OSStatus SecRequirementCreateWithString(CFStringRef text, SecCSFlags flags,
                                        SecRequirementRef* requirement);

PALLIMO_END_C
