// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#import <AppKit/AppKit.h>

#include "adapters/macos/objc_adapters.h"

@interface PallimoWindowRules : NSObject
@end
@implementation PallimoWindowRules

- (void)applicationWillUpdate:(NSNotification*)notification {
  for (NSWindow* window in NSApp.windows) {
    [window standardWindowButton:NSWindowZoomButton].enabled = NO;
    window.collectionBehavior = NSWindowCollectionBehaviorFullScreenNone |
                                NSWindowCollectionBehaviorFullScreenDisallowsTiling;
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
  window.titlebarAppearsTransparent = YES;
  window.titleVisibility = NSWindowTitleHidden;
  window.styleMask |= NSWindowStyleMaskFullSizeContentView;
}

}  // namespace pallimo::adapters::macos
