// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>

// Our own declarations of what the Mac's adapters use of Objective-C's run time. They stand in for
// the system's headers where there is no Mac, and are never on the include path of one.

#define API_AVAILABLE_MACOS(version) __attribute__((availability(macos, introduced = version)))

typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef double CGFloat;

#pragma clang assume_nonnull begin

@protocol NSObject
- (BOOL)conformsToProtocol:(Protocol*)protocol;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
- (instancetype)init;
@end

#pragma clang assume_nonnull end
