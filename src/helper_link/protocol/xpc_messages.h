// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#import <Foundation/Foundation.h>

// The messages of xpc_protocol.h, one to one, as a Mac's connections carry them. Both sides must
// agree on the selectors and types. Objective-C++ only.

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

#pragma clang assume_nonnull end
