// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#import <Sparkle/Sparkle.h>

#include "adapters/common/macos/ns_text.h"
#include "adapters/macos/objc_adapters.h"

@interface PallimoUpdaterDelegate : NSObject <SPUUpdaterDelegate, SPUStandardUserDriverDelegate>
@end
@implementation PallimoUpdaterDelegate
@end

namespace pallimo::adapters::macos {
namespace {

class SparkleSoftwareUpdater final : public ports::SoftwareUpdater {
 public:
  std::optional<std::string> start() override {
    NSError* error = nil;
    if ([updater_ startUpdater:&error]) return std::nullopt;
    return common::stdString(error.description);
  }
  void checkForUpdates() override { [updater_ checkForUpdates]; }

 private:
  NSBundle* const app_ = NSBundle.mainBundle;
  PallimoUpdaterDelegate* const delegate_ = [[PallimoUpdaterDelegate alloc] init];  // held weakly
  SPUStandardUserDriver* const driver_ =
      [[SPUStandardUserDriver alloc] initWithHostBundle:app_ delegate:delegate_];
  SPUUpdater* const updater_ = [[SPUUpdater alloc] initWithHostBundle:app_
                                                    applicationBundle:app_
                                                           userDriver:driver_
                                                             delegate:delegate_];
};

}  // namespace
std::unique_ptr<ports::SoftwareUpdater> makeSoftwareUpdater() {
  return std::make_unique<SparkleSoftwareUpdater>();
}
}  // namespace pallimo::adapters::macos
