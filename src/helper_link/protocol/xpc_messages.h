// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

// The messages of xpc_protocol.h, one to one, as a Mac's connections carry them, and the way of a
// text into and out of them. Both sides must agree on the selectors and types. Objective-C++ only.

#pragma clang assume_nonnull begin

@protocol XPCProtocol
- (void)isRespondingWithCompletion:(void (^)(BOOL isResponding))completion;
- (void)unInstallHelper;
- (void)getVersionWithCompletion:(void (^)(NSString* version))completion;
- (void)requestPowermetricsWithMsSampling:(double)msSampling includeGPU:(BOOL)includeGPU;
- (void)closeHelper;
@end

@protocol ClientProtocol
- (void)powermetricsResult:(nullable NSData*)document;
@end

namespace pallimo::helper_link::protocol {

/// Empty for bytes that are no UTF-8: the system's calls take no missing text.
inline NSString* nsString(std::string_view text) {
  NSString* const made = [[NSString alloc] initWithBytes:text.data()
                                                  length:text.size()
                                                encoding:NSUTF8StringEncoding];
  return made != nil ? made : @"";
}

inline std::string stdString(NSString* text) {
  const char* const bytes = text.UTF8String;
  return bytes != nullptr ? bytes : "";
}

}  // namespace pallimo::helper_link::protocol

#pragma clang assume_nonnull end
