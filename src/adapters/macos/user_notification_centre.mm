// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#import <UserNotifications/UserNotifications.h>

#include <atomic>

#include "adapters/common/macos/ns_text.h"
#include "adapters/macos/objc_adapters.h"

using pallimo::adapters::common::nsString, pallimo::adapters::common::stdString;

constexpr UNNotificationPresentationOptions kBannerAndSound =
    UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionSound;
static_assert(kBannerAndSound == 18);

@interface PallimoNotificationDelegate : NSObject <UNUserNotificationCenterDelegate> {
 @public
  std::weak_ptr<pallimo::ports::UserNotificationsDelegate> delegate;
}
@end
@implementation PallimoNotificationDelegate
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))completionHandler {
  pallimo::ports::UserNotification shown;
  shown.identifier = stdString(notification.request.identifier);
  shown.title = stdString(notification.request.content.title);
  shown.subtitle = stdString(notification.request.content.subtitle);
  const auto asked = delegate.lock();
  completionHandler(asked ? asked->willPresentNotification(shown) : kBannerAndSound);
}
@end

namespace pallimo::adapters::macos {
namespace {

class NotificationCentre final : public ports::UserNotifications {
 public:
  ~NotificationCentre() override { *hasEnded_ = true; }
  void setDelegate(std::weak_ptr<ports::UserNotificationsDelegate> delegate) override {
    delegate_ = [[PallimoNotificationDelegate alloc] init];
    delegate_->delegate = std::move(delegate);
    centre_.delegate = delegate_;
  }
  void requestAuthorization(std::uint32_t options, AuthorizationAnswer answer) override {
    const auto hasEnded = hasEnded_;
    const auto answered = ^(BOOL granted, NSError* error) {
      if (*hasEnded) return;
      if (error == nil) return answer(granted, std::nullopt);
      answer(granted, stdString(error.description));
    };
    [centre_ requestAuthorizationWithOptions:options completionHandler:answered];
  }
  void add(ports::UserNotification notification) override {
    UNMutableNotificationContent* const content = [[UNMutableNotificationContent alloc] init];
    content.title = nsString(notification.title);
    content.subtitle = nsString(notification.subtitle);
    if (notification.playsDefaultSound) content.sound = UNNotificationSound.defaultSound;
    UNNotificationTrigger* const trigger =
        [UNTimeIntervalNotificationTrigger triggerWithTimeInterval:notification.delay repeats:NO];
    UNNotificationRequest* const request =
        [UNNotificationRequest requestWithIdentifier:nsString(notification.identifier)
                                             content:content
                                             trigger:trigger];
    [centre_ addNotificationRequest:request withCompletionHandler:nil];
  }

 private:
  // The user may answer at any time, or never.
  const std::shared_ptr<std::atomic<bool>> hasEnded_ = std::make_shared<std::atomic<bool>>(false);
  // Asking for it without a bundle raises an exception.
  UNUserNotificationCenter* const centre_ = NSBundle.mainBundle.bundleIdentifier
                                                ? UNUserNotificationCenter.currentNotificationCenter
                                                : nil;
  PallimoNotificationDelegate* delegate_ = nil;  // the centre holds it weakly
};

}  // namespace
std::unique_ptr<ports::UserNotifications> makeUserNotifications() {
  return std::make_unique<NotificationCentre>();
}
}  // namespace pallimo::adapters::macos
