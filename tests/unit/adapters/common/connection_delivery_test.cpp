// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/connection_delivery.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

#include "base/serial_thread.h"
#include "fakes/manual_executor.h"

namespace pallimo::adapters::common {
namespace {

class Results final : public helper_link::protocol::ClientProtocol {
 public:
  explicit Results(std::vector<std::string>& events) : events_(events) {}
  void powermetricsResult(std::optional<base::Bytes> document) override {
    events_.push_back(document ? "result " + std::to_string(document->size()) : "absent");
  }

 private:
  std::vector<std::string>& events_;
};

class ConnectionDeliveryTest : public ::testing::Test {
 protected:
  using Events = std::vector<std::string>;

  ConnectionDeliveryTest() {
    delivery_->setExportedObject(object_);
    delivery_->setInvalidationHandler([this] { events_.push_back("invalidated"); });
    delivery_->setInterruptionHandler([this] { events_.push_back("interrupted"); });
  }
  void deliverEverything() {
    delivery_->deliverResult(base::Bytes(3));
    delivery_->deliverReply([this] { events_.push_back("reply"); });
    delivery_->deliverInterruption();
  }

  Events events_;
  fakes::ManualExecutor executor_;
  std::shared_ptr<Results> object_ = std::make_shared<Results>(events_);
  std::shared_ptr<DeliveryGate> gate_ = std::make_shared<DeliveryGate>(executor_);
  std::shared_ptr<ConnectionDelivery> delivery_ = std::make_shared<ConnectionDelivery>(gate_);
};

TEST_F(ConnectionDeliveryTest, NothingIsCalledBeforeTheExecutorGetsToIt) {
  deliverEverything();
  EXPECT_EQ(events_, Events());
}

TEST_F(ConnectionDeliveryTest, ThingsAreCalledInTheOrderInWhichTheyCame) {
  deliverEverything();
  delivery_->deliverResult(std::nullopt);
  delivery_->deliverInvalidation();
  executor_.run();
  EXPECT_EQ(events_, Events({"result 3", "reply", "interrupted", "absent", "invalidated"}));
}

TEST_F(ConnectionDeliveryTest, AHandlerThatWasClearedMeanwhileIsNotCalled) {
  deliverEverything();
  delivery_->deliverInvalidation();
  delivery_->setInterruptionHandler(nullptr);
  delivery_->setInvalidationHandler(nullptr);
  executor_.run();
  EXPECT_EQ(events_, Events({"result 3", "reply"}));
}

TEST_F(ConnectionDeliveryTest, AfterTheEndOnlyTheInvalidationIsCalled) {
  deliverEverything();
  delivery_->end();
  deliverEverything();
  delivery_->deliverInvalidation();
  executor_.run();
  EXPECT_EQ(events_, Events({"invalidated"}));
}

TEST_F(ConnectionDeliveryTest, TheInvalidationIsCalledOnce) {
  delivery_->deliverInvalidation();
  delivery_->deliverInvalidation();
  executor_.run();
  delivery_->deliverInvalidation();
  executor_.run();
  EXPECT_EQ(events_, Events({"invalidated"}));
}

TEST_F(ConnectionDeliveryTest, NothingFollowsTheInvalidation) {
  delivery_->deliverInvalidation();
  deliverEverything();
  executor_.run();
  EXPECT_EQ(events_, Events({"invalidated"}));
}

TEST_F(ConnectionDeliveryTest, ASilencedDeliveryCallsNothing) {
  deliverEverything();
  delivery_->deliverInvalidation();
  delivery_->silence();
  deliverEverything();
  delivery_->deliverInvalidation();
  executor_.run();
  EXPECT_EQ(events_, Events());
}

TEST_F(ConnectionDeliveryTest, ASilencedDeliveryUsesItsExecutorNoMore) {
  delivery_->silence();
  deliverEverything();
  delivery_->deliverInvalidation();
  EXPECT_FALSE(executor_.runOne());
}

TEST_F(ConnectionDeliveryTest, AllDeliveriesOfOneConnectorAreSilencedTogether) {
  const auto other = std::make_shared<ConnectionDelivery>(gate_);
  other->setInterruptionHandler([this] { events_.push_back("interrupted"); });
  other->deliverInterruption();
  deliverEverything();
  delivery_->deliverInvalidation();
  gate_->close();
  executor_.run();
  other->deliverInterruption();
  deliverEverything();
  delivery_->deliverInvalidation();
  EXPECT_FALSE(executor_.runOne());
  EXPECT_EQ(events_, Events());
}

/// Posting to it is held up until the test lets it go on.
class HeldExecutor final : public base::Executor {
 public:
  ~HeldExecutor() override { wasPosting = isPosting.load(); }
  void post(std::function<void()>) override {
    isPosting = true;
    entered.set_value();
    let.get_future().wait();
    isPosting = false;
  }

  std::promise<void> entered;
  std::promise<void> let;
  std::atomic<bool> isPosting = false;
  inline static bool wasPosting = false;
};

TEST(DeliveryGate, IsNotClosedWhileAnotherThreadPosts) {
  auto executor = std::make_unique<HeldExecutor>();
  auto* const held = executor.get();
  const auto gate = std::make_shared<DeliveryGate>(*executor);
  const auto delivery = std::make_shared<ConnectionDelivery>(gate);
  std::thread system([&] { delivery->deliverReply([] {}); });
  held->entered.get_future().wait();
  std::promise<void> isClosing;
  std::thread owner([&] {
    isClosing.set_value();
    gate->close();
    executor.reset();
  });
  isClosing.get_future().wait();
  held->let.set_value();
  system.join();
  owner.join();
  EXPECT_FALSE(HeldExecutor::wasPosting);
}

TEST(DeliveryGate, AnExecutorMayEndWhileTheSystemDelivers) {
  for (int round = 0; round < 50; ++round) {
    auto executor = std::make_unique<base::SerialThread>();
    const auto gate = std::make_shared<DeliveryGate>(*executor);
    const auto delivery = std::make_shared<ConnectionDelivery>(gate);
    std::promise<void> started;
    std::thread system([&] {
      delivery->deliverReply([] {});
      started.set_value();
      for (int reply = 0; reply < 100; ++reply) delivery->deliverReply([] {});
    });
    started.get_future().wait();
    gate->close();
    executor.reset();
    system.join();
  }
}

TEST_F(ConnectionDeliveryTest, TheExportedObjectIsReleasedAtTheEnd) {
  EXPECT_EQ(object_.use_count(), 2);
  delivery_->end();
  EXPECT_EQ(object_.use_count(), 1);
  delivery_->setExportedObject(object_);
  EXPECT_EQ(object_.use_count(), 1);
}

TEST_F(ConnectionDeliveryTest, AHandlerMayChangeTheHandlers) {
  delivery_->setInterruptionHandler([this] {
    events_.push_back("first");
    delivery_->setInterruptionHandler(nullptr);
    delivery_->setInvalidationHandler(nullptr);
    delivery_->end();
  });
  delivery_->deliverInterruption();
  delivery_->deliverInterruption();
  executor_.run();
  EXPECT_EQ(events_, Events({"first"}));
}

TEST_F(ConnectionDeliveryTest, AHandlerMayHoldTheLastReferenceToSomebodyWhoCallsBack) {
  struct Owner {
    explicit Owner(std::shared_ptr<ConnectionDelivery> theDelivery)
        : delivery(std::move(theDelivery)) {}
    ~Owner() { delivery->silence(); }
    std::shared_ptr<ConnectionDelivery> delivery;
  };
  delivery_->setInterruptionHandler([owner = std::make_shared<Owner>(delivery_)] {});
  delivery_->setInterruptionHandler(nullptr);
  deliverEverything();
  executor_.run();
  EXPECT_EQ(events_, Events());
}

}  // namespace
}  // namespace pallimo::adapters::common
