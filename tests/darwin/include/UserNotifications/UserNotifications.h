// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class UNNotification, UNNotificationContent, UNNotificationRequest, UNNotificationSound,
    UNNotificationTrigger, UNUserNotificationCenter;

typedef NSUInteger UNAuthorizationOptions;
enum : UNAuthorizationOptions {
  UNAuthorizationOptionSound = 1 << 1,
  UNAuthorizationOptionAlert = 1 << 2
};

typedef NSUInteger UNNotificationPresentationOptions;
enum : UNNotificationPresentationOptions {
  UNNotificationPresentationOptionSound = 1 << 1,
  UNNotificationPresentationOptionBanner = 1 << 4,
};

@interface UNNotificationSound : NSObject <NSCopying>
@property(class, readonly, copy) UNNotificationSound* defaultSound;
@end

@interface UNNotificationContent : NSObject <NSCopying>
@property(readonly, copy) NSString* title;
@property(readonly, copy) NSString* subtitle;
@end

@interface UNMutableNotificationContent : UNNotificationContent
@property(readwrite, copy) NSString* title;
@property(readwrite, copy) NSString* subtitle;
@property(nullable, copy) UNNotificationSound* sound;
@end

@interface UNNotificationTrigger : NSObject <NSCopying>
@end

@interface UNTimeIntervalNotificationTrigger : UNNotificationTrigger
+ (instancetype)triggerWithTimeInterval:(NSTimeInterval)timeInterval repeats:(BOOL)repeats;
@end

@interface UNNotificationRequest : NSObject <NSCopying>
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
@property(readonly, copy) NSString* identifier;
@property(readonly, copy) UNNotificationContent* content;
@end

@interface UNNotification : NSObject <NSCopying>
@property(readonly, copy) UNNotificationRequest* request;
@end

@protocol UNUserNotificationCenterDelegate <NSObject>
// Optional on a Mac. Here a method that is misspelled where it is defined is missed.
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:
             (void (^)(UNNotificationPresentationOptions options))completionHandler;
@end

@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter*)currentNotificationCenter;
@property(weak, nullable) id<UNUserNotificationCenterDelegate> delegate;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:
                          (void (^)(BOOL granted, NSError* _Nullable error))completionHandler;
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
@end

#pragma clang assume_nonnull end
