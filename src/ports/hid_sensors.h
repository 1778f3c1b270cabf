// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace pallimo::ports {

/// One entry of a matching dictionary: a property that a service must have.
struct HidMatch {
  std::string_view property;
  std::int32_t value = 0;
};

/// A client of the HID event system. Made for one read; one thread.
class HidClient {
 public:
  virtual ~HidClient() = default;

  /// Only services with all these properties count from now on.
  virtual void setMatching(std::span<const HidMatch> matching) = 0;
  /// Takes hold of the matching services and returns their number; nothing when the system gives no
  /// list. Below, `service` is a place in the list.
  virtual std::optional<std::size_t> copyServices() = 0;
  /// The service's property as an integer: a number of exactly that value, in whatever form it is
  /// kept. Nothing when the property is missing, is no number (a boolean is none), or loses
  /// anything on the way: a fraction, or what exceeds 64 bits.
  virtual std::optional<std::int64_t> integerProperty(std::size_t service,
                                                      std::string_view name) const = 0;
  /// The field of the service's current event of that type; nothing when it has no such event.
  virtual std::optional<double> eventFloat(std::size_t service, std::int32_t type,
                                           std::int32_t field) const = 0;
};

/// The HID event system, through which the power-management unit publishes its sensors. Any thread.
class HidSensors {
 public:
  virtual ~HidSensors() = default;

  /// A new client, or nullptr when the system makes none.
  virtual std::unique_ptr<HidClient> createClient() = 0;
};

}  // namespace pallimo::ports
