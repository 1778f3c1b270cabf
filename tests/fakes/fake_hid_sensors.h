// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/four_char_code.h"
#include "base/mutex.h"
#include "fakes/journal.h"
#include "ports/hid_sensors.h"

namespace pallimo::fakes {

/// A HID service as the test writes it down: a temperature sensor with an event of one field.
struct FakeHidService {
  std::optional<std::int64_t> locationID;
  std::optional<double> value;  ///< its event's first field; nothing without an event
  std::int32_t page = 0xFF00;
  std::int32_t usage = 5;
  std::int32_t type = 15;
};

/// A HID event system with the services that the test adds, at first none. Only those that match
/// are listed, and only the event and the field that were asked for have a value. Any thread.
///
/// Fails the test when a client is asked before it is told what matches, or for a service that it
/// does not have. It outlives its clients.
class FakeHidSensors final : public ports::HidSensors {
 public:
  ~FakeHidSensors() override { EXPECT_EQ(liveClients_, 0u) << "HID clients are left over"; }

  void add(FakeHidService service) {
    base::MutexLock lock(mutex_);
    services_.push_back(service);
  }
  /// A sensor by its name of four characters.
  void add(std::string_view name, std::optional<double> value) {
    add({.locationID = base::encodeFourCharCode(name), .value = value});
  }
  void clear() {
    base::MutexLock lock(mutex_);
    services_.clear();
  }
  void setMakesClients(bool makes) {
    base::MutexLock lock(mutex_);
    makesClients_ = makes;
  }
  /// Whether there is a list of services at all, an empty one included.
  void setHasList(bool hasList) {
    base::MutexLock lock(mutex_);
    hasList_ = hasList;
  }

  std::size_t liveClients() const {
    base::MutexLock lock(mutex_);
    return liveClients_;
  }
  /// What was asked since the last call: "client", "match PrimaryUsage 5", "services",
  /// "LocationID of 0", "event 15 field 983040 of 0".
  std::vector<std::string> takeCalls() { return calls_.take(); }

  std::unique_ptr<ports::HidClient> createClient() override {
    calls_.add("client");
    {
      base::MutexLock lock(mutex_);
      if (!makesClients_) return nullptr;
      ++liveClients_;
    }
    return std::make_unique<Client>(*this);
  }

 private:
  class Client final : public ports::HidClient {
   public:
    explicit Client(FakeHidSensors& owner) : owner_(owner) {}
    ~Client() override {
      base::MutexLock lock(owner_.mutex_);
      --owner_.liveClients_;
    }

    void setMatching(std::span<const ports::HidMatch> matching) override {
      isMatching_ = true;
      for (const ports::HidMatch& match : matching) {
        owner_.calls_.add("match " + std::string(match.property) + " " +
                          std::to_string(match.value));
        matching_.emplace_back(match.property, match.value);
      }
    }

    std::optional<std::size_t> copyServices() override {
      owner_.calls_.add("services");
      EXPECT_TRUE(isMatching_) << "asked for services before it was told what matches";
      base::MutexLock lock(owner_.mutex_);
      if (!owner_.hasList_) return std::nullopt;
      for (const FakeHidService& service : owner_.services_) {
        if (matches(service)) services_.push_back(service);
      }
      return services_.size();
    }

    std::optional<std::int64_t> integerProperty(std::size_t service,
                                                std::string_view name) const override {
      owner_.calls_.add(std::string(name) + " of " + std::to_string(service));
      return name == "LocationID" ? at(service).locationID : std::nullopt;
    }

    std::optional<double> eventFloat(std::size_t service, std::int32_t type,
                                     std::int32_t field) const override {
      owner_.calls_.add("event " + std::to_string(type) + " field " + std::to_string(field) +
                        " of " + std::to_string(service));
      const FakeHidService asked = at(service);
      if (asked.type != type || field != type * 65536) return std::nullopt;
      return asked.value;
    }

   private:
    bool matches(const FakeHidService& service) const {
      for (const auto& [property, value] : matching_) {
        const bool isPage = property == "PrimaryUsagePage";
        if (!isPage && property != "PrimaryUsage") return false;
        if ((isPage ? service.page : service.usage) != value) return false;
      }
      return true;
    }

    FakeHidService at(std::size_t service) const {
      EXPECT_LT(service, services_.size()) << "asked for a service that is not there";
      return service < services_.size() ? services_[service] : FakeHidService{};
    }

    FakeHidSensors& owner_;
    bool isMatching_ = false;
    std::vector<std::pair<std::string, std::int32_t>> matching_;
    std::vector<FakeHidService> services_;
  };

  mutable base::Mutex mutex_;
  std::vector<FakeHidService> services_ PALLIMO_GUARDED_BY(mutex_);
  bool makesClients_ PALLIMO_GUARDED_BY(mutex_) = true;
  bool hasList_ PALLIMO_GUARDED_BY(mutex_) = true;
  std::size_t liveClients_ PALLIMO_GUARDED_BY(mutex_) = 0;
  Journal calls_;
};

}  // namespace pallimo::fakes
