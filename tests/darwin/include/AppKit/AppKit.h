// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSApplication, NSButton, NSWindow;

extern NSApplication* _Null_unspecified NSApp;
extern const NSNotificationName NSApplicationWillUpdateNotification;

enum NSWindowButton : NSUInteger {
  NSWindowCloseButton,
  NSWindowMiniaturizeButton,
  NSWindowZoomButton,
  NSWindowToolbarButton,
  NSWindowDocumentIconButton,
};
static_assert(NSWindowZoomButton == 2);

typedef NSUInteger NSWindowCollectionBehavior;
enum : NSWindowCollectionBehavior {
  NSWindowCollectionBehaviorFullScreenNone = 1 << 9,
  NSWindowCollectionBehaviorFullScreenDisallowsTiling = 1 << 12,
};

typedef NSUInteger NSWindowStyleMask;
enum : NSWindowStyleMask { NSWindowStyleMaskFullSizeContentView = 1 << 15 };

enum NSWindowTitleVisibility : NSInteger { NSWindowTitleVisible = 0, NSWindowTitleHidden = 1 };

@interface NSControl : NSObject
@property(getter=isEnabled) BOOL enabled;
@end

@interface NSButton : NSControl
@end

@interface NSWindow : NSObject
@property(class) BOOL allowsAutomaticWindowTabbing;
- (nullable NSButton*)standardWindowButton:(NSWindowButton)button;
@property NSWindowCollectionBehavior collectionBehavior;
@property NSWindowStyleMask styleMask;
@property BOOL titlebarAppearsTransparent;
@property NSWindowTitleVisibility titleVisibility;
@end

@interface NSView : NSObject
@property(nullable, readonly, assign) NSWindow* window;
@end

@interface NSApplication : NSObject
@property(readonly, copy) NSArray<NSWindow*>* windows;
@end

#pragma clang assume_nonnull end
