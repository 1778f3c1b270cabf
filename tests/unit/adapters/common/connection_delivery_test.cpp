// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/connection_delivery.h"

#include <gtest/gtest.h>

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
  std::shared_ptr<ConnectionDelivery> delivery_ = std::make_shared<ConnectionDelivery>(executor_);
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
  const auto isSilent = std::make_shared<std::atomic<bool>>(false);
  delivery_ = std::make_shared<ConnectionDelivery>(executor_, isSilent);
  delivery_->setExportedObject(object_);
  delivery_->setInvalidationHandler([this] { events_.push_back("invalidated"); });
  delivery_->setInterruptionHandler([this] { events_.push_back("interrupted"); });
  deliverEverything();
  delivery_->deliverInvalidation();
  *isSilent = true;
  executor_.run();
  deliverEverything();
  delivery_->deliverInvalidation();
  EXPECT_FALSE(executor_.runOne());
  EXPECT_EQ(events_, Events());
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
