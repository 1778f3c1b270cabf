// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sgm1_io_hid_sensors.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "base/fatal.h"
#include "base/four_char_code.h"
#include "sensors/temperature_tables.h"

namespace pallimo::sensors {

namespace {

constexpr std::int32_t kVendorPage = 0xFF00;
constexpr std::int32_t kTemperatureUsage = 5;
constexpr std::int32_t kTemperatureEvent = 15;
constexpr double kNoEvent = -1;

/// A type's fields are numbered from here: the type stands in the upper half.
std::int32_t firstFieldOf(std::int32_t type) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(type) << 16);
}

}  // namespace

TemperatureReadings SGM1IOHIDSensors::readHIDTemperatures(std::int32_t page, std::int32_t usage,
                                                          std::int32_t type) const {
  const std::array<ports::HidMatch, 2> matching = {
      {{"PrimaryUsagePage", page}, {"PrimaryUsage", usage}}};
  const std::unique_ptr<ports::HidClient> client = hid_.createClient();
  if (!client) base::fatal("The HID event system made no client.");
  client->setMatching(matching);

  TemperatureReadings readings;
  const std::size_t count = client->copyServices().value_or(0);
  for (std::size_t service = 0; service < count; ++service) {
    const std::optional<std::int64_t> location = client->integerProperty(service, "LocationID");
    if (!location || *location <= 0) continue;
    const std::string name = base::decodeFourCharCode(static_cast<std::uint32_t>(*location));
    readings[name] = client->eventFloat(service, type, firstFieldOf(type)).value_or(kNoEvent);
  }
  return readings;
}

TemperatureReadings SGM1IOHIDSensors::readHIDCPUTemperatures() const {
  TemperatureReadings readings =
      readHIDTemperatures(kVendorPage, kTemperatureUsage, kTemperatureEvent);
  std::erase_if(readings, [](const auto& reading) { return !isHIDCPUSensor(reading.first); });
  return readings;
}

TemperatureReadings SGM1IOHIDSensors::readHIDGPUTemperatures() const {
  TemperatureReadings readings =
      readHIDTemperatures(kVendorPage, kTemperatureUsage, kTemperatureEvent);
  std::erase_if(readings, [](const auto& reading) { return !isHIDGPUSensor(reading.first); });
  return readings;
}

}  // namespace pallimo::sensors
