// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// See darwin_types.h.

#include "../../CoreFoundation/CoreFoundation.h"

PALLIMO_BEGIN_C

typedef struct __IOHIDServiceClient* IOHIDServiceClientRef;

CFTypeRef IOHIDServiceClientCopyProperty(IOHIDServiceClientRef service, CFStringRef key);

PALLIMO_END_C
