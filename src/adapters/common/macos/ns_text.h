// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

// The way of a text into Objective-C and out of it. Objective-C++ only. Any thread.
namespace pallimo::adapters::common {

#pragma clang assume_nonnull begin

/// Empty for bytes that are no UTF-8: the system's calls take no missing text.
inline NSString* nsString(std::string_view text) {
  NSString* const made = [[NSString alloc] initWithBytes:text.data()
                                                  length:text.size()
                                                encoding:NSUTF8StringEncoding];
  return made != nil ? made : @"";
}

/// The whole text, a NUL within it included; empty for one that UTF-8 has no form for.
inline std::string stdString(NSString* text) {
  const char* const bytes = text.UTF8String;
  if (bytes == nullptr) return {};
  return {bytes, [text lengthOfBytesUsingEncoding:NSUTF8StringEncoding]};
}

#pragma clang assume_nonnull end

}  // namespace pallimo::adapters::common
