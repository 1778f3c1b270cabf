// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <IOKit/hidsystem/IOHIDEventSystemClient.h>
#include <IOKit/hidsystem/IOHIDServiceClient.h>

#include <cstdint>

// What IOKit exports beside the functions of its public headers, in which these are missing. Weak:
// the app must start on a system that dropped them. A client is made only where all four are there.
extern "C" {
typedef struct __IOHIDEvent* IOHIDEventRef;
[[gnu::weak]] IOHIDEventSystemClientRef IOHIDEventSystemClientCreate(CFAllocatorRef allocator);
[[gnu::weak]] void IOHIDEventSystemClientSetMatching(IOHIDEventSystemClientRef client,
                                                     CFDictionaryRef matching);
[[gnu::weak]] IOHIDEventRef IOHIDServiceClientCopyEvent(IOHIDServiceClientRef service,
                                                        std::uint32_t type, IOHIDEventRef matching,
                                                        IOOptionBits options);
[[gnu::weak]] double IOHIDEventGetFloatValue(IOHIDEventRef event, std::uint32_t field);
}
