// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <chrono>
#include <future>

#include "adapters/common/connection_delivery.h"
#include "adapters/common/connection_life.h"
#include "adapters/common/macos/ns_text.h"
#include "adapters/common/macos/xpc_helper_proxy.h"
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

class Connection final : public ports::HelperConnection {
 public:
  Connection(NSXPCConnection* connection, NSString* requirement, Delivery delivery,
             common::Sender last)
      : connection_(connection),
        requirement_(requirement),
        delivery_(std::move(delivery)),
        last_(std::move(last)) {}
  ~Connection() override {
    delivery_->silence();
    close(life_.end());
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
    if (life_.beginResuming()) close(life_.endResuming(start()));
  }
  void invalidate() override {
    delivery_->end();
    close(life_.end());
  }
  std::shared_ptr<protocol::XPCProtocol> remoteObjectProxy() override {
    @autoreleasepool {
      const id proxy = connection_.remoteObjectProxy;
      if (![proxy conformsToProtocol:@protocol(XPCProtocol)]) return nullptr;
      return std::make_shared<common::HelperProxy>(proxy, connection_, delivery_, last_);
    }
  }

 private:
  bool start() {
    @try {
      [connection_ setCodeSigningRequirement:requirement_];
      [connection_ resume];
      return true;
    } @catch (...) {
      return false;
    }
  }
  void (^blockFor(const std::function<void()>& handler, void (Link::*deliver)()))() {
    const auto delivery = delivery_;
    if (!handler) return nil;
    return ^{
      (*delivery.*deliver)();
    };
  }
  /// To invalidate a connection may throw away what it has not sent yet.
  void close(common::Closing how) {
    NSXPCConnection* const connection = connection_;
    if (how == common::Closing::atOnce) [connection invalidate];
    if (how != common::Closing::afterWhatWasSent) return;
    [connection scheduleSendBarrierBlock:^{
      [connection invalidate];
    }];
  }

  NSXPCConnection* const connection_;
  NSString* const requirement_;
  const Delivery delivery_;
  const common::Sender last_;
  common::ConnectionLife life_;
};

class Connector final : public ports::HelperConnector {
 public:
  Connector(base::Executor& delivery, std::string_view requirement)
      : executor_(delivery), requirement_(requirement) {}
  ~Connector() override {
    gate_->close();
    NSXPCConnection* const last = last_->connection;
    if (last == nil) return;
    const auto sent = std::make_shared<std::promise<void>>();
    [last scheduleSendBarrierBlock:^{
      sent->set_value();
    }];
    sent->get_future().wait_for(std::chrono::seconds(1));
  }
  std::shared_ptr<ports::HelperConnection> connect(std::string_view machServiceName,
                                                   unsigned options) override {
    if (!common::isSigningRequirement(requirement_)) return nullptr;
    NSString* const name = common::nsString(machServiceName);
    NSXPCConnection* const made = [[NSXPCConnection alloc] initWithMachServiceName:name
                                                                           options:options];
    made.remoteObjectInterface = [NSXPCInterface interfaceWithProtocol:@protocol(XPCProtocol)];
    made.exportedInterface = [NSXPCInterface interfaceWithProtocol:@protocol(ClientProtocol)];
    auto link = std::make_shared<Link>(gate_);
    return std::make_shared<Connection>(made, common::nsString(requirement_), link, last_);
  }

 private:
  common::PooledExecutor executor_;  // used through the gate alone
  const std::string requirement_;
  const std::shared_ptr<common::DeliveryGate> gate_ =
      std::make_shared<common::DeliveryGate>(executor_);
  const common::Sender last_ = std::make_shared<common::LastSender>();
};

}  // namespace
std::unique_ptr<ports::HelperConnector> makeHelperConnector(base::Executor& delivery,
                                                            std::string_view requirement) {
  return std::make_unique<Connector>(delivery, requirement);
}
}  // namespace pallimo::adapters::macos
