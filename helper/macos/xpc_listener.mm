// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/macos/xpc_listener.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <set>
#include <utility>

#include "adapters/common/macos/ns_text.h"
#include "adapters/common/signing_requirement.h"
#include "base/mutex.h"
#include "helper/macos/client_waits.h"
#include "helper_link/protocol/xpc_messages.h"

namespace pallimo::helper {
namespace {

namespace protocol = helper_link::protocol;
using adapters::common::nsString;
using adapters::common::PollLoop;

/// So many clients may be connected at once; more are sent away.
constexpr std::size_t kMostPeers = 64;
/// So many more may be connected that have said nothing yet.
constexpr std::size_t kMostWaiting = 64;
/// A client that has sent nothing until then, or nothing that passed the check, is sent away.
constexpr std::chrono::seconds kFirstMessage{5};

/// One connection. Made on a thread of the system; from then on it belongs to the loop's thread,
/// but for receive() and whatever says "any thread".
class Peer final : public ports::HelperPeer, public std::enable_shared_from_this<Peer> {
 public:
  /// Hears of the peer, on the loop's thread. Outlives it, or has called forget().
  class Owner {
   public:
    virtual ~Owner() = default;
    /// The peer has sent its first message, which the system has checked. Returns who answers it.
    virtual std::shared_ptr<protocol::XPCProtocol> peerDidSpeak(
        const std::shared_ptr<Peer>& peer) = 0;
    virtual void peerDidEnd(const std::shared_ptr<Peer>& peer) = 0;
  };

  /// It counts as one of `waits`, which has been told so, until it speaks or ends.
  Peer(PollLoop& loop, Owner& owner, std::shared_ptr<ClientWaits> waits,
       NSXPCConnection* connection)
      : loop_(loop), owner_(&owner), connection_(connection), waits_(std::move(waits)) {}

  /// Any thread. The message is handed to whoever answers the peer, if somebody does.
  void receive(std::function<void(protocol::XPCProtocol&)> message) {
    hasSpoken_ = true;
    endWait();
    loop_.async([self = shared_from_this(), message = std::move(message)] {
      self->meet();
      if (const auto service = self->service_) message(*service);
    });
  }
  /// Any thread.
  void didEnd() {
    endWait();
    loop_.async([self = shared_from_this()] {
      self->service_.reset();
      self->connection_ = nil;
      if (auto* owner = std::exchange(self->owner_, nullptr)) owner->peerDidEnd(self);
    });
  }
  bool hasSpoken() const { return hasSpoken_; }
  void meet() {
    if (owner_ == nullptr || hasMet_) return;
    hasMet_ = true;
    service_ = owner_->peerDidSpeak(shared_from_this());
    if (!service_) abort();
  }
  void abort() { [connection_ invalidate]; }
  void forget() {
    owner_ = nullptr;
    service_.reset();
    abort();
  }

  void powermetricsResult(std::optional<base::Bytes> document) override {
    NSData* data = nil;
    if (document) data = [NSData dataWithBytes:document->data() length:document->size()];
    const id<ClientProtocol> client = connection_.remoteObjectProxy;
    [client powermetricsResult:data];
  }
  void close() override {
    NSXPCConnection* const connection = connection_;
    [connection scheduleSendBarrierBlock:^{
      [connection invalidate];
    }];
  }

 private:
  void endWait() {
    if (isWaiting_.exchange(false)) waits_->end();
  }

  PollLoop& loop_;
  Owner* owner_;                 // null once forgotten or ended
  NSXPCConnection* connection_;  // nil once ended
  std::shared_ptr<protocol::XPCProtocol> service_;
  const std::shared_ptr<ClientWaits> waits_;
  bool hasMet_ = false;
  std::atomic<bool> isWaiting_ = true;
  std::atomic<bool> hasSpoken_ = false;
};

}  // namespace
}  // namespace pallimo::helper

/// What a client calls. Each message becomes a task of the loop.
@interface PallimoHelperEnd : NSObject <XPCProtocol> {
 @public
  std::shared_ptr<pallimo::helper::Peer> peer;
}
@end

@implementation PallimoHelperEnd
- (void)isRespondingWithCompletion:(void (^)(BOOL))completion {
  peer->receive([completion](auto& service) {
    service.isResponding([completion](bool isResponding) { completion(isResponding); });
  });
}
- (void)unInstallHelper {
  peer->receive([](auto& service) { service.unInstallHelper(); });
}
- (void)getVersionWithCompletion:(void (^)(NSString*))completion {
  peer->receive([completion](auto& service) {
    service.getVersion([completion](const std::string& version) {
      completion(pallimo::adapters::common::nsString(version));
    });
  });
}
- (void)requestPowermetricsWithMsSampling:(double)msSampling includeGPU:(BOOL)includeGPU {
  peer->receive([msSampling, includeGPU](auto& service) {
    service.requestPowermetrics(msSampling, includeGPU);
  });
}
- (void)closeHelper {
  peer->receive([](auto& service) { service.closeHelper(); });
}
@end

/// Hands each new connection on, on a thread of the system.
@interface PallimoListenerDelegate : NSObject <NSXPCListenerDelegate> {
 @public
  std::function<bool(NSXPCConnection*)> admit;
}
@end

@implementation PallimoListenerDelegate
- (BOOL)listener:(NSXPCListener*)listener
    shouldAcceptNewConnection:(NSXPCConnection*)newConnection {
  return admit(newConnection);
}
@end

namespace pallimo::helper {
namespace {

class Listener final : public Peer::Owner, public std::enable_shared_from_this<Listener> {
 public:
  Listener(PollLoop& loop, std::string_view machServiceName, std::string_view requirement)
      : loop_(loop),
        name_(nsString(machServiceName)),
        isRequirementValid_(adapters::common::isSigningRequirement(requirement)),
        requirement_(nsString(requirement)) {}

  void end() {
    [listener_ invalidate];
    for (const auto& peer : takePeers()) peer->forget();
  }

  bool start(ports::HelperListener::Delegate& delegate) {
    if (!isRequirementValid_) return false;
    delegate_ = &delegate;
    listenerDelegate_ = [[PallimoListenerDelegate alloc] init];
    listenerDelegate_->admit = [weak = weak_from_this()](NSXPCConnection* connection) {
      const auto self = weak.lock();
      return self && self->admit(connection);
    };
    listener_ = [[NSXPCListener alloc] initWithMachServiceName:name_];
    listener_.delegate = listenerDelegate_;
    [listener_ resume];
    return true;
  }

  void stop() {
    [listener_ invalidate];
    // Their first message may be on its way.
    waits_->finish(kFirstMessage);
    for (const auto& peer : copyPeers()) {
      if (peer->hasSpoken()) peer->meet();
    }
  }

 private:
  /// A thread of the system.
  bool admit(NSXPCConnection* connection) {
    if (!waits_->begin()) return false;
    const auto peer = std::make_shared<Peer>(loop_, *this, waits_, connection);
    PallimoHelperEnd* const end = [[PallimoHelperEnd alloc] init];
    end->peer = peer;
    connection.exportedInterface = [NSXPCInterface interfaceWithProtocol:@protocol(XPCProtocol)];
    connection.exportedObject = end;
    connection.remoteObjectInterface =
        [NSXPCInterface interfaceWithProtocol:@protocol(ClientProtocol)];
    connection.invalidationHandler = ^{
      peer->didEnd();
    };
    __weak NSXPCConnection* const interrupted = connection;
    connection.interruptionHandler = ^{
      [interrupted invalidate];
    };
    {
      base::MutexLock lock(mutex_);
      peers_.insert(peer);
    }
    loop_.after(kFirstMessage, [weak = std::weak_ptr<Peer>(peer)] {
      const auto waiting = weak.lock();
      if (waiting && !waiting->hasSpoken()) waiting->abort();
    });
    // Before the connection can say anything: the system lets no other message through.
    [connection setCodeSigningRequirement:requirement_];
    [connection resume];
    return true;
  }

  std::shared_ptr<protocol::XPCProtocol> peerDidSpeak(const std::shared_ptr<Peer>& peer) override {
    if (accepted_.size() >= kMostPeers) return nullptr;
    accepted_.insert(peer);
    return delegate_->accept(peer);
  }

  void peerDidEnd(const std::shared_ptr<Peer>& peer) override {
    {
      base::MutexLock lock(mutex_);
      peers_.erase(peer);
    }
    if (accepted_.erase(peer) > 0) delegate_->disconnected(peer);
  }

  std::set<std::shared_ptr<Peer>> copyPeers() {
    base::MutexLock lock(mutex_);
    return peers_;
  }
  std::set<std::shared_ptr<Peer>> takePeers() {
    base::MutexLock lock(mutex_);
    return std::exchange(peers_, {});
  }

  PollLoop& loop_;
  NSString* const name_;
  const bool isRequirementValid_;
  NSString* const requirement_;
  ports::HelperListener::Delegate* delegate_ = nullptr;
  PallimoListenerDelegate* listenerDelegate_ = nil;  // the listener holds it weakly
  NSXPCListener* listener_ = nil;
  const std::shared_ptr<ClientWaits> waits_ = std::make_shared<ClientWaits>(kMostWaiting);
  std::set<std::shared_ptr<Peer>> accepted_;  // those of them that the delegate knows
  base::Mutex mutex_;
  std::set<std::shared_ptr<Peer>> peers_ PALLIMO_GUARDED_BY(mutex_);
};

/// A thread of the system may still be in the listener when the helper lets go of it.
class XpcListener final : public ports::HelperListener {
 public:
  explicit XpcListener(std::shared_ptr<Listener> listener) : listener_(std::move(listener)) {}
  ~XpcListener() override { listener_->end(); }
  XpcListener(const XpcListener&) = delete;
  XpcListener& operator=(const XpcListener&) = delete;

  bool start(Delegate& delegate) override { return listener_->start(delegate); }
  void stop() override { listener_->stop(); }

 private:
  const std::shared_ptr<Listener> listener_;
};

}  // namespace

std::unique_ptr<ports::HelperListener> makeXpcListener(PollLoop& loop,
                                                       std::string_view machServiceName,
                                                       std::string_view requirement) {
  return std::make_unique<XpcListener>(
      std::make_shared<Listener>(loop, machServiceName, requirement));
}

}  // namespace pallimo::helper
