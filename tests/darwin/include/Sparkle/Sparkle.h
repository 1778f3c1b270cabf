// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@protocol SPUUpdaterDelegate <NSObject>
@end

@protocol SPUStandardUserDriverDelegate <NSObject>
@end

@protocol SPUUserDriver <NSObject>
@end

@interface SPUStandardUserDriver : NSObject <SPUUserDriver>
- (instancetype)initWithHostBundle:(NSBundle*)hostBundle
                          delegate:(nullable id<SPUStandardUserDriverDelegate>)delegate;
@end

@interface SPUUpdater : NSObject
- (instancetype)initWithHostBundle:(NSBundle*)hostBundle
                 applicationBundle:(NSBundle*)applicationBundle
                        userDriver:(id<SPUUserDriver>)userDriver
                          delegate:(nullable id<SPUUpdaterDelegate>)delegate;
- (BOOL)startUpdater:(NSError* _Nullable __autoreleasing* _Nullable)error;
- (void)checkForUpdates;
@end

#pragma clang assume_nonnull end
