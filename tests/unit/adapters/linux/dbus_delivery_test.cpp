// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/dbus_delivery.h"

#include <gtest/gtest.h>

#include "fakes/manual_executor.h"

namespace pallimo::adapters::linux {
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

class DBusDeliveryTest : public ::testing::Test {
 protected:
  using Events = std::vector<std::string>;

  DBusDeliveryTest() {
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
  std::shared_ptr<DBusDelivery> delivery_ = std::make_shared<DBusDelivery>(executor_);
};

TEST_F(DBusDeliveryTest, NothingIsCalledBeforeTheExecutorGetsToIt) {
  deliverEverything();
  EXPECT_EQ(events_, Events());
}

TEST_F(DBusDeliveryTest, ThingsAreCalledInTheOrderInWhichTheyCame) {
  deliverEverything();
  delivery_->deliverResult(std::nullopt);
  delivery_->deliverInvalidation();
  executor_.run();
  EXPECT_EQ(events_, Events({"result 3", "reply", "interrupted", "absent", "invalidated"}));
}

TEST_F(DBusDeliveryTest, AHandlerThatWasClearedMeanwhileIsNotCalled) {
  deliverEverything();
  delivery_->deliverInvalidation();
  delivery_->setInterruptionHandler(nullptr);
  delivery_->setInvalidationHandler(nullptr);
  executor_.run();
  EXPECT_EQ(events_, Events({"result 3", "reply"}));
}

TEST_F(DBusDeliveryTest, AfterTheEndOnlyTheInvalidationIsCalled) {
  deliverEverything();
  delivery_->end();
  deliverEverything();
  delivery_->deliverInvalidation();
  executor_.run();
  EXPECT_EQ(events_, Events({"invalidated"}));
}

TEST_F(DBusDeliveryTest, TheInvalidationIsCalledOnce) {
  delivery_->deliverInvalidation();
  delivery_->deliverInvalidation();
  executor_.run();
  delivery_->deliverInvalidation();
  executor_.run();
  EXPECT_EQ(events_, Events({"invalidated"}));
}

TEST_F(DBusDeliveryTest, NothingFollowsTheInvalidation) {
  delivery_->deliverInvalidation();
  deliverEverything();
  executor_.run();
  EXPECT_EQ(events_, Events({"invalidated"}));
}

TEST_F(DBusDeliveryTest, ASilencedDeliveryCallsNothing) {
  deliverEverything();
  delivery_->deliverInvalidation();
  delivery_->silence();
  deliverEverything();
  delivery_->deliverInvalidation();
  executor_.run();
  EXPECT_EQ(events_, Events());
}

TEST_F(DBusDeliveryTest, ASilencedDeliveryUsesItsExecutorNoMore) {
  delivery_->silence();
  deliverEverything();
  delivery_->deliverInvalidation();
  EXPECT_FALSE(executor_.runOne());
}

TEST_F(DBusDeliveryTest, AllDeliveriesOfOneConnectorAreSilencedTogether) {
  const auto isSilent = std::make_shared<std::atomic<bool>>(false);
  delivery_ = std::make_shared<DBusDelivery>(executor_, isSilent);
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

TEST_F(DBusDeliveryTest, TheExportedObjectIsReleasedAtTheEnd) {
  EXPECT_EQ(object_.use_count(), 2);
  delivery_->end();
  EXPECT_EQ(object_.use_count(), 1);
  delivery_->setExportedObject(object_);
  EXPECT_EQ(object_.use_count(), 1);
}

TEST_F(DBusDeliveryTest, AHandlerMayChangeTheHandlers) {
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

TEST_F(DBusDeliveryTest, AHandlerMayHoldTheLastReferenceToSomebodyWhoCallsBack) {
  struct Owner {
    explicit Owner(std::shared_ptr<DBusDelivery> theDelivery) : delivery(std::move(theDelivery)) {}
    ~Owner() { delivery->silence(); }
    std::shared_ptr<DBusDelivery> delivery;
  };
  delivery_->setInterruptionHandler([owner = std::make_shared<Owner>(delivery_)] {});
  delivery_->setInterruptionHandler(nullptr);
  deliverEverything();
  executor_.run();
  EXPECT_EQ(events_, Events());
}

}  // namespace
}  // namespace pallimo::adapters::linux
