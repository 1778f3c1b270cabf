// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// See darwin_types.h.

#include "../CoreFoundation/CoreFoundation.h"
#include "../Security/Authorization.h"

PALLIMO_BEGIN_C

extern const CFStringRef kSMDomainSystemLaunchd;

Boolean SMJobBless(CFStringRef domain, CFStringRef executableLabel, AuthorizationRef authorization,
                   CFErrorRef* error)
    __attribute__((deprecated("from macOS 13 on SMAppService is to take its place")));

PALLIMO_END_C
