// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/macos/system_values.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "darwin/on_a_mac.h"

namespace pallimo::darwin {
namespace {

using adapters::macos::propertyListFrom;
using base::PropertyList;

class SystemValues : public OnAMac {
 protected:
  std::optional<PropertyList> converted(FakeObject::Value value) {
    const adapters::macos::CFRef<CFTypeRef> object(mac.objects.make(std::move(value)));
    return propertyListFrom(object.get());
  }
  const FakeObject* text(const std::string& value) { return mac.objects.make(value); }
};

TEST_F(SystemValues, EveryKindStaysWhatItIs) {
  EXPECT_EQ(converted(std::string("Grüße 🙂")), PropertyList(std::string("Grüße 🙂")));
  EXPECT_EQ(converted(std::int64_t{37}), PropertyList(std::int64_t{37}));
  EXPECT_EQ(converted(2.5), PropertyList(2.5));
  EXPECT_EQ(converted(true), PropertyList(true));
  EXPECT_EQ(converted(false), PropertyList(false));
  EXPECT_EQ(converted(base::Bytes{0x6B, 0x10, 0, 0}), PropertyList(base::Bytes{0x6B, 0x10, 0, 0}));
  EXPECT_EQ(converted(base::Bytes{}), PropertyList(base::Bytes{}));
  EXPECT_EQ(converted(std::string()), PropertyList(std::string()));
}

TEST_F(SystemValues, LargeNumbersKeepTheir64Bits) {
  const auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(converted(most), PropertyList(most));
}

TEST_F(SystemValues, AWholeRealIsStillANumber) {
  EXPECT_EQ(converted(3.0)->numberOr(0), 3);
  EXPECT_EQ(converted(1e30)->numberOr(0), 1e30);
}

TEST_F(SystemValues, NothingIsNothing) { EXPECT_EQ(propertyListFrom(nullptr), std::nullopt); }

TEST_F(SystemValues, AKindThatAPropertyListLacksIsNothing) {
  EXPECT_EQ(converted(FakeThing{"set", nullptr}), std::nullopt);
}

TEST_F(SystemValues, ATextThatUtf8HasNoFormForIsNothing) {
  EXPECT_EQ(converted(std::string("\x01half")), std::nullopt);
}

TEST_F(SystemValues, AnArrayIsLeftWithWhatCanBeRead) {
  FakeArray array;
  array.push_back(text("one"));
  array.push_back(mac.objects.make(FakeThing{"null", nullptr}));
  array.push_back(text("two"));
  EXPECT_EQ(converted(std::move(array)),
            PropertyList(base::PropertyListArray{PropertyList(std::string("one")),
                                                 PropertyList(std::string("two"))}));
}

TEST_F(SystemValues, ADictionaryIsLeftWithWhatCanBeRead) {
  FakeDictionary inner;
  inner.emplace_back(text("Device Utilization %"), mac.objects.make(std::int64_t{2}));
  FakeDictionary outer;
  outer.emplace_back(text("PerformanceStatistics"), mac.objects.make(std::move(inner)));
  outer.emplace_back(text("null"), mac.objects.make(FakeThing{"null", nullptr}));
  outer.emplace_back(mac.objects.make(std::int64_t{1}), text("its key is a number"));
  outer.emplace_back(text("\x01half"), text("its key has no form"));
  const auto list = converted(std::move(outer));
  ASSERT_NE(list->dictionary(), nullptr);
  EXPECT_EQ(list->dictionary()->size(), 1u);
  const PropertyList* statistics = list->find("PerformanceStatistics");
  ASSERT_NE(statistics, nullptr);
  EXPECT_EQ(statistics->find("Device Utilization %")->numberOr(0), 2);
}

TEST_F(SystemValues, ATextBecomesTheSystemsOwn) {
  const auto made = adapters::macos::cfText("Grüße");
  EXPECT_EQ(propertyListFrom(made.get()), PropertyList(std::string("Grüße")));
  EXPECT_FALSE(adapters::macos::cfText("\xff"));
}

TEST_F(SystemValues, AReferenceHasOneOwnerAtATime) {
  adapters::macos::CFRef<CFTypeRef> first(text("first"));
  adapters::macos::CFRef<CFTypeRef> second(std::move(first));
  EXPECT_FALSE(first);
  EXPECT_TRUE(second);
  second = adapters::macos::CFRef<CFTypeRef>(text("second"));
  EXPECT_EQ(mac.held(), Lines{"text \"second\""});
}

}  // namespace
}  // namespace pallimo::darwin
