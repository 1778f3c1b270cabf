// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#import <AppKit/AppKit.h>

#include "adapters/macos/objc_adapters.h"

constexpr NSWindowCollectionBehavior kBehaviour =
    NSWindowCollectionBehaviorFullScreenNone | NSWindowCollectionBehaviorFullScreenDisallowsTiling;
static_assert(kBehaviour == 0x1200);

// What is written may be drawn anew, and be followed by a notice: so it is written if it differs.
@interface PallimoWindowRules : NSObject
@end
@implementation PallimoWindowRules
- (void)applicationWillUpdate:(NSNotification*)notification {
  for (NSWindow* window in NSApp.windows) {
    NSButton* const zoom = [window standardWindowButton:NSWindowZoomButton];
    if (zoom.enabled) zoom.enabled = NO;
    if (window.collectionBehavior != kBehaviour) window.collectionBehavior = kBehaviour;
  }
}
@end

namespace pallimo::adapters::macos {

void keepWindowRules() {
  // The notification centre does not hold it.
  static PallimoWindowRules* const rules = [[PallimoWindowRules alloc] init];
  NSWindow.allowsAutomaticWindowTabbing = NO;
  [NSNotificationCenter.defaultCenter addObserver:rules
                                         selector:@selector(applicationWillUpdate:)
                                             name:NSApplicationWillUpdateNotification
                                           object:nil];
}

void hideTitleBar(void* view) {
  NSWindow* const window = ((__bridge NSView*)view).window;
  const NSWindowStyleMask mask = window.styleMask | NSWindowStyleMaskFullSizeContentView;
  if (!window.titlebarAppearsTransparent) window.titlebarAppearsTransparent = YES;
  if (window.titleVisibility != NSWindowTitleHidden) window.titleVisibility = NSWindowTitleHidden;
  if (window.styleMask != mask) window.styleMask = mask;
}
}  // namespace pallimo::adapters::macos
