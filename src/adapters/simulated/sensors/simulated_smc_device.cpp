// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_smc_device.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "adapters/simulated/recordings/smc_value.h"
#include "base/four_char_code.h"

namespace pallimo::adapters::simulated {

namespace {

using ports::SMCCommand;
using ports::SMCRequestRecord;

constexpr std::string_view kKeyCountKey = "#KEY";
constexpr std::string_view kKeyCountType = "ui32";

std::unordered_map<std::uint32_t, std::size_t> placesOf(const std::vector<SmcKey>& keys) {
  std::unordered_map<std::uint32_t, std::size_t> places;
  places.reserve(keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    places.emplace(base::encodeFourCharCode(keys[i].key), i);
  }
  return places;
}

bool isKeyCount(std::uint32_t key) { return key == base::encodeFourCharCode(kKeyCountKey); }

}  // namespace

SimulatedSmcDevice::SimulatedSmcDevice(RecordedSmc smc, CurrentStep& now)
    : smc_(std::move(smc)), now_(now), places_(placesOf(smc_.keys)) {}

std::optional<std::uint32_t> SimulatedSmcDevice::open() {
  if (!smc_.isAvailable) return std::nullopt;
  do {
    ++lastHandle_;
  } while (lastHandle_ == 0 || handles_.count(lastHandle_) != 0);
  handles_.insert(lastHandle_);
  return lastHandle_;
}

std::int32_t SimulatedSmcDevice::callStructMethod(std::uint32_t connection, std::uint32_t selector,
                                                  const SMCRequestRecord& input,
                                                  SMCRequestRecord& output) {
  if (handles_.count(connection) == 0) return kIOReturnNotOpen;
  if (selector != ports::kSMCSelector) return kIOReturnBadArgument;
  Answer answer;
  switch (static_cast<SMCCommand>(input.data8)) {
    case SMCCommand::readBytes:
      answer = readBytes(input.key);
      break;
    case SMCCommand::keyAtIndex:
      answer = keyAtIndex(input.data32);
      break;
    case SMCCommand::readKeyInfo:
      answer = readKeyInfo(input.key);
      break;
    default:
      return kIOReturnBadArgument;
  }
  if (!answer) return kIOReturnNotFound;
  output = *answer;
  return 0;
}

void SimulatedSmcDevice::close(std::uint32_t connection) { handles_.erase(connection); }

SimulatedSmcDevice::Answer SimulatedSmcDevice::keyAtIndex(std::uint32_t index) const {
  if (index >= smc_.keys.size() || smc_.keys[index].indexFails) return std::nullopt;
  SMCRequestRecord record;
  record.key = base::encodeFourCharCode(smc_.keys[index].key);
  return record;
}

SimulatedSmcDevice::Answer SimulatedSmcDevice::readKeyInfo(std::uint32_t key) const {
  SMCRequestRecord record;
  if (const SmcKey* listed = find(key)) {
    if (listed->infoFails) return std::nullopt;
    record.keyInfoDataSize = listed->size;
    record.keyInfoDataType = base::encodeFourCharCode(listed->type);
    return record;
  }
  if (!isKeyCount(key)) return std::nullopt;
  record.keyInfoDataSize = smcSize(kKeyCountType);
  record.keyInfoDataType = base::encodeFourCharCode(kKeyCountType);
  return record;
}

SimulatedSmcDevice::Answer SimulatedSmcDevice::readBytes(std::uint32_t key) const {
  const SmcBytes value = valueOf(key);
  if (!value) return std::nullopt;
  SMCRequestRecord record;
  std::copy(value->begin(), value->end(), record.bytes);
  return record;
}

SmcBytes SimulatedSmcDevice::valueOf(std::uint32_t key) const {
  if (isKeyCount(key)) {
    return smc_.keyCount ? smcValue(kKeyCountType, *smc_.keyCount) : std::nullopt;
  }
  const SmcKey* listed = find(key);
  if (listed == nullptr) return std::nullopt;
  const auto step = now_.get();
  const auto changed = step->smc.find(listed->key);
  return changed == step->smc.end() ? listed->bytes : changed->second;
}

const SmcKey* SimulatedSmcDevice::find(std::uint32_t key) const {
  const auto place = places_.find(key);
  return place == places_.end() ? nullptr : &smc_.keys[place->second];
}

}  // namespace pallimo::adapters::simulated
