// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "adapters/common/connection_delivery.h"
#include "adapters/common/macos/ns_text.h"
#include "helper_link/protocol/xpc_messages.h"

// How an app's messages leave by NSXPC and its tasks run, each in an autorelease pool: the threads
// are the program's own, which have none. Objective-C++ only.
namespace pallimo::adapters::common {

/// Tasks of a thread that has no pool of its own.
class PooledExecutor final : public base::Executor {
 public:
  explicit PooledExecutor(base::Executor& executor) : executor_(executor) {}
  void post(std::function<void()> task) override {
    executor_.post([task = std::move(task)] {
      @autoreleasepool {
        task();
      }
    });
  }

 private:
  base::Executor& executor_;
};

/// The connection that carried the last message of all. Weak references may be shared by threads.
struct LastSender {
  __weak NSXPCConnection* connection = nil;
};
using Sender = std::shared_ptr<LastSender>;

class HelperProxy final : public helper_link::protocol::XPCProtocol {
 public:
  HelperProxy(id<XPCProtocol> remote, NSXPCConnection* sender,
              std::shared_ptr<ConnectionDelivery> link, Sender last)
      : remote_(remote), sender_(sender), delivery_(std::move(link)), last_(std::move(last)) {}

  void isResponding(std::function<void(bool)> completion) override {
    const auto delivery = delivery_;
    const auto reply = ^(BOOL isResponding) {
      delivery->deliverReply([completion, isResponding] { completion(isResponding); });
    };
    send([&] { [remote_ isRespondingWithCompletion:reply]; });
  }
  void unInstallHelper() override {
    send([&] { [remote_ unInstallHelper]; });
  }
  void getVersion(std::function<void(std::string)> completion) override {
    const auto delivery = delivery_;
    const auto reply = ^(NSString* version) {
      delivery->deliverReply([completion, text = stdString(version)] { completion(text); });
    };
    send([&] { [remote_ getVersionWithCompletion:reply]; });
  }
  void requestPowermetrics(double msSampling, bool includeGPU) override {
    send([&] { [remote_ requestPowermetricsWithMsSampling:msSampling includeGPU:includeGPU]; });
  }
  void closeHelper() override {
    send([&] { [remote_ closeHelper]; });
  }

 private:
  template <typename Message>
  void send(Message message) {
    @autoreleasepool {
      last_->connection = sender_;
      message();
    }
  }

  const id<XPCProtocol> remote_;
  __weak NSXPCConnection* const sender_;
  const std::shared_ptr<ConnectionDelivery> delivery_;
  const Sender last_;
};

}  // namespace pallimo::adapters::common
