// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_hid_sensors.h"

#include <algorithm>
#include <array>
#include <memory>

namespace pallimo::adapters::simulated {

namespace {

using ports::HidMatch;

constexpr std::int32_t kTemperatureType = 15;
constexpr std::int32_t kTemperatureField = kTemperatureType << 16;
constexpr std::array kTemperatureSensors{HidMatch{"PrimaryUsagePage", 0xFF00},
                                         HidMatch{"PrimaryUsage", 5}};

bool isSame(const HidMatch& left, const HidMatch& right) {
  return left.property == right.property && left.value == right.value;
}

bool matchesTemperatureSensors(std::span<const HidMatch> matching) {
  return std::is_permutation(matching.begin(), matching.end(), kTemperatureSensors.begin(),
                             kTemperatureSensors.end(), isSame);
}

class Client final : public ports::HidClient {
 public:
  explicit Client(CurrentStep& now) : now_(now) {}

  void setMatching(std::span<const HidMatch> matching) override {
    isMatching_ = matchesTemperatureSensors(matching);
  }

  std::optional<std::size_t> copyServices() override {
    step_ = now_.get();
    if (!step_->hid) return std::nullopt;
    return services().size();
  }

  std::optional<std::int64_t> integerProperty(std::size_t service,
                                              std::string_view name) const override {
    if (service >= services().size() || name != "LocationID") return std::nullopt;
    return services()[service].locationID;
  }

  std::optional<double> eventFloat(std::size_t service, std::int32_t type,
                                   std::int32_t field) const override {
    const bool isTemperature = type == kTemperatureType && field == kTemperatureField;
    if (service >= services().size() || !isTemperature) return std::nullopt;
    return services()[service].value;
  }

 private:
  std::span<const HidReading> services() const {
    if (!isMatching_ || !step_ || !step_->hid) return {};
    return *step_->hid;
  }

  CurrentStep& now_;
  std::shared_ptr<const RecordingStep> step_;  // nullptr before copyServices()
  bool isMatching_ = false;
};

}  // namespace

std::unique_ptr<ports::HidClient> SimulatedHidSensors::createClient() {
  return std::make_unique<Client>(now_);
}

}  // namespace pallimo::adapters::simulated
