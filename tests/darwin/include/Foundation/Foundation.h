// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "objc/NSObject.h"

#pragma clang assume_nonnull begin

@class NSArray<ObjectType>, NSBundle, NSData, NSError, NSNotification, NSNotificationCenter,
    NSString;

@protocol NSCopying
@end

// Strings, bytes, lists

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying>
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
@property(readonly, nullable) const char* UTF8String;
- (NSUInteger)lengthOfBytesUsingEncoding:(NSStringEncoding)encoding;
@end

@interface NSData : NSObject <NSCopying>
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes;
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)count;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
@property(readonly) NSUInteger count;
@end

@interface NSError : NSObject <NSCopying>
@property(readonly, copy) NSString* description;
@end

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly, copy) NSString* operatingSystemVersionString;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(readonly, copy, nullable) NSString* bundleIdentifier;
@end

// Notices

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject <NSCopying>
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(nullable NSNotificationName)name
             object:(nullable id)object;
- (void)removeObserver:(id)observer;
@end

// Connections between processes

typedef NSUInteger NSXPCConnectionOptions;
enum : NSXPCConnectionOptions { NSXPCConnectionPrivileged = 1 << 12 };

@interface NSXPCInterface : NSObject
+ (NSXPCInterface*)interfaceWithProtocol:(Protocol*)protocol;
@end

@interface NSXPCConnection : NSObject
- (instancetype)initWithMachServiceName:(NSString*)name options:(NSXPCConnectionOptions)options;
@property(nullable, retain) NSXPCInterface* exportedInterface;
@property(nullable, retain) id exportedObject;
@property(nullable, retain) NSXPCInterface* remoteObjectInterface;
@property(readonly, retain) id remoteObjectProxy;
@property(nullable, copy) void (^interruptionHandler)(void);
@property(nullable, copy) void (^invalidationHandler)(void);
- (void)setCodeSigningRequirement:(NSString*)requirement API_AVAILABLE_MACOS(13.0);
- (void)scheduleSendBarrierBlock:(void (^)(void))block API_AVAILABLE_MACOS(11.0);
- (void)resume;
- (void)invalidate;
@end

@class NSXPCListener;

@protocol NSXPCListenerDelegate <NSObject>
// Optional on a Mac. Here a method that is misspelled where it is defined is missed.
- (BOOL)listener:(NSXPCListener*)listener shouldAcceptNewConnection:(NSXPCConnection*)newConnection;
@end

@interface NSXPCListener : NSObject
- (instancetype)initWithMachServiceName:(NSString*)name;
@property(nullable, weak) id<NSXPCListenerDelegate> delegate;
- (void)resume;
- (void)invalidate;
@end

#pragma clang assume_nonnull end
