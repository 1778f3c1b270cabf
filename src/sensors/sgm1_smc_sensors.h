// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ports/smc_device.h"

namespace pallimo::sensors {

/// The SMC's keys: their names, types and values. One pass at a time: open, read, close.
///
/// A failure is silent everywhere: without a connection every call fails, and what fails is left
/// out. The record's own result byte is never looked at; the kernel's return value decides.
class SGM1SMCSensors {
 public:
  /// `device` outlives the object. Opens nothing.
  explicit SGM1SMCSensors(ports::SmcDevice& device) : device_(device) {}
  SGM1SMCSensors(const SGM1SMCSensors&) = delete;
  SGM1SMCSensors& operator=(const SGM1SMCSensors&) = delete;

  /// The connection's handle; 0 while it is closed, as between passes.
  std::uint32_t conn() const { return conn_; }

  /// When the device can't be opened, the handle stays what it was and later calls fail.
  void openConnection();
  /// Leaves the handle 0 in every case.
  void closeConnection();

  /// How many keys there are ("#KEY"), or nothing when that can't be read.
  std::optional<std::uint32_t> readKeyCount();
  /// The names of the keys at the indices from `first` up to but not including `last`; those that
  /// can't be read are left out. A range that ends before it begins stops the program.
  std::vector<std::string> keyAtIndex(std::uint32_t first, std::uint32_t last);
  /// The name of the key's type ("flt "), or nothing when the key is absent: the call fails or
  /// tells a size of 0.
  std::optional<std::string> readKeyInfo(std::string_view key);
  /// The key's value, °C, or nothing when it can't be read. `type` "flt " is a 32-bit float, "fpe2"
  /// a fixed-point number of which whole degrees count; any other type reads -1.
  std::optional<double> readValue(std::string_view key, std::string_view type);

 private:
  std::optional<ports::SMCRequestRecord> call(const ports::SMCRequestRecord& input);

  ports::SmcDevice& device_;
  std::uint32_t conn_ = 0;
};

}  // namespace pallimo::sensors
