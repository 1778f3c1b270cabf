// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <chrono>
#include <future>

#include "adapters/common/connection_delivery.h"
#include "adapters/common/signing_requirement.h"
#include "adapters/macos/objc_adapters.h"
#include "helper_link/protocol/xpc_messages.h"

namespace protocol = pallimo::helper_link::protocol;
using Link = pallimo::adapters::common::ConnectionDelivery;
using Delivery = std::shared_ptr<Link>;

@interface PallimoLinkClient : NSObject <ClientProtocol> {
 @public
  Delivery delivery;
}
@end
@implementation PallimoLinkClient
- (void)powermetricsResult:(NSData*)document {
  const auto* const first = static_cast<const std::uint8_t*>(document.bytes);
  if (document == nil) return delivery->deliverResult(std::nullopt);
  delivery->deliverResult(pallimo::base::Bytes(first, first + document.length));
}
@end

namespace pallimo::adapters::macos {
namespace {

class HelperProxy final : public protocol::XPCProtocol {
 public:
  HelperProxy(id<XPCProtocol> remote, Delivery link) : remote_(remote), delivery_(link) {}

  void isResponding(std::function<void(bool)> completion) override {
    const auto delivery = delivery_;
    [remote_ isRespondingWithCompletion:^(BOOL isResponding) {
      delivery->deliverReply([completion, isResponding] { completion(isResponding); });
    }];
  }
  void unInstallHelper() override { [remote_ unInstallHelper]; }
  void getVersion(std::function<void(std::string)> completion) override {
    const auto delivery = delivery_;
    [remote_ getVersionWithCompletion:^(NSString* version) {
      delivery->deliverReply(
          [completion, text = protocol::stdString(version)] { completion(text); });
    }];
  }
  void requestPowermetrics(double msSampling, bool includeGPU) override {
    [remote_ requestPowermetricsWithMsSampling:msSampling includeGPU:includeGPU];
  }
  void closeHelper() override { [remote_ closeHelper]; }

 private:
  const id<XPCProtocol> remote_;
  const Delivery delivery_;
};

class Connection final : public ports::HelperConnection {
 public:
  Connection(NSXPCConnection* connection, NSString* requirement, Delivery delivery)
      : connection_(connection), requirement_(requirement), delivery_(std::move(delivery)) {}
  ~Connection() override {
    delivery_->silence();
    [connection_ invalidate];
  }
  void setExportedObject(std::shared_ptr<protocol::ClientProtocol> object) override {
    delivery_->setExportedObject(std::move(object));
    PallimoLinkClient* const client = [[PallimoLinkClient alloc] init];
    client->delivery = delivery_;
    connection_.exportedObject = client;
  }
  void setInvalidationHandler(std::function<void()> handler) override {
    connection_.invalidationHandler = blockFor(handler, &Link::deliverInvalidation);
    delivery_->setInvalidationHandler(std::move(handler));
  }
  void setInterruptionHandler(std::function<void()> handler) override {
    connection_.interruptionHandler = blockFor(handler, &Link::deliverInterruption);
    delivery_->setInterruptionHandler(std::move(handler));
  }
  void resume() override {
    [connection_ setCodeSigningRequirement:requirement_];
    [connection_ resume];
  }
  void invalidate() override {
    delivery_->end();
    [connection_ invalidate];
  }
  std::shared_ptr<protocol::XPCProtocol> remoteObjectProxy() override {
    const id proxy = connection_.remoteObjectProxy;
    if (![proxy conformsToProtocol:@protocol(XPCProtocol)]) return nullptr;
    return std::make_shared<HelperProxy>(proxy, delivery_);
  }

 private:
  void (^blockFor(const std::function<void()>& handler, void (Link::*deliver)()))() {
    const auto delivery = delivery_;
    if (!handler) return nil;
    return ^{
      (*delivery.*deliver)();
    };
  }

  NSXPCConnection* const connection_;
  NSString* const requirement_;
  const Delivery delivery_;
};

class Connector final : public ports::HelperConnector {
 public:
  Connector(base::Executor& delivery, std::string_view requirement)
      : executor_(delivery), requirement_(requirement) {}
  ~Connector() override {
    *isSilent_ = true;
    const auto sent = std::make_shared<std::promise<void>>();
    [last_ scheduleSendBarrierBlock:^{
      sent->set_value();
    }];
    if (last_ != nil) sent->get_future().wait_for(std::chrono::seconds(1));
  }
  std::shared_ptr<ports::HelperConnection> connect(std::string_view machServiceName,
                                                   unsigned options) override {
    if (!common::isSigningRequirement(requirement_)) return nullptr;
    NSString* const name = protocol::nsString(machServiceName);
    NSXPCConnection* const made = [[NSXPCConnection alloc] initWithMachServiceName:name
                                                                           options:options];
    made.remoteObjectInterface = [NSXPCInterface interfaceWithProtocol:@protocol(XPCProtocol)];
    made.exportedInterface = [NSXPCInterface interfaceWithProtocol:@protocol(ClientProtocol)];
    last_ = made;
    auto link = std::make_shared<Link>(executor_, isSilent_);
    return std::make_shared<Connection>(made, protocol::nsString(requirement_), link);
  }

 private:
  base::Executor& executor_;
  const std::string requirement_;
  const std::shared_ptr<std::atomic<bool>> isSilent_ = std::make_shared<std::atomic<bool>>(false);
  __weak NSXPCConnection* last_ = nil;
};

}  // namespace
std::unique_ptr<ports::HelperConnector> makeHelperConnector(base::Executor& delivery,
                                                            std::string_view requirement) {
  return std::make_unique<Connector>(delivery, requirement);
}

}  // namespace pallimo::adapters::macos
