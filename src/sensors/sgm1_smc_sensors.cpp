// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sgm1_smc_sensors.h"

#include <cstring>
#include <limits>

#include "base/fatal.h"
#include "base/four_char_code.h"

namespace pallimo::sensors {

namespace {

using ports::SMCCommand;
using ports::SMCRequestRecord;

// Whatever the value's real size is: nobody looks at more than four bytes of it.
constexpr std::uint32_t kRequestedSize = 4;

SMCRequestRecord request(SMCCommand command) {
  SMCRequestRecord record;
  record.data8 = static_cast<std::uint8_t>(command);
  return record;
}

SMCRequestRecord keyRequest(SMCCommand command, std::string_view key) {
  SMCRequestRecord record = request(command);
  record.key = base::encodeFourCharCode(key);
  record.keyInfoDataSize = kRequestedSize;
  return record;
}

std::uint32_t bigEndian(const std::uint8_t* bytes) {
  std::uint32_t number = 0;
  for (int i = 0; i < 4; ++i) number = (number << 8) | bytes[i];
  return number;
}

double hostFloat(const std::uint8_t* bytes) {
  static_assert(sizeof(float) == 4 && std::numeric_limits<float>::is_iec559);
  float number = 0;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

double decoded(const std::uint8_t* bytes, std::string_view type) {
  if (type == "flt ") return hostFloat(bytes);
  if (type == "fpe2") return bytes[0] * 64 + (bytes[1] >> 2);
  return -1;
}

}  // namespace

void SGM1SMCSensors::openConnection() {
  if (const std::optional<std::uint32_t> opened = device_.open()) conn_ = *opened;
}

void SGM1SMCSensors::closeConnection() {
  if (conn_ != 0) device_.close(conn_);
  conn_ = 0;
}

std::optional<std::uint32_t> SGM1SMCSensors::readKeyCount() {
  const auto output = call(keyRequest(SMCCommand::readBytes, "#KEY"));
  if (!output) return std::nullopt;
  return bigEndian(output->bytes);
}

std::vector<std::string> SGM1SMCSensors::keyAtIndex(std::uint32_t first, std::uint32_t last) {
  if (last < first) base::fatal("The range of SMC key indices ends before it begins.");
  std::vector<std::string> names;
  for (std::uint32_t index = first; index != last; ++index) {
    SMCRequestRecord input = request(SMCCommand::keyAtIndex);
    input.data32 = index;
    if (const auto output = call(input)) names.push_back(base::decodeFourCharCode(output->key));
  }
  return names;
}

std::optional<std::string> SGM1SMCSensors::readKeyInfo(std::string_view key) {
  const auto output = call(keyRequest(SMCCommand::readKeyInfo, key));
  if (!output || output->keyInfoDataSize == 0) return std::nullopt;
  return base::decodeFourCharCode(output->keyInfoDataType);
}

std::optional<double> SGM1SMCSensors::readValue(std::string_view key, std::string_view type) {
  const auto output = call(keyRequest(SMCCommand::readBytes, key));
  if (!output) return std::nullopt;
  return decoded(output->bytes, type);
}

std::optional<SMCRequestRecord> SGM1SMCSensors::call(const SMCRequestRecord& input) {
  SMCRequestRecord output;
  if (device_.callStructMethod(conn_, ports::kSMCSelector, input, output) != 0) {
    return std::nullopt;
  }
  return output;
}

}  // namespace pallimo::sensors
