// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>

namespace pallimo::ports {

/// The parameter record of the SMC's user client, input and output alike: 80 bytes, host byte
/// order, natural alignment. What is not set is sent as zero, padding included.
struct SMCRequestRecord {
  std::uint32_t key = 0;  ///< four-character code: of the key to act on, or of the one found
  std::uint8_t versionMajor = 0;
  std::uint8_t versionMinor = 0;
  std::uint8_t versionBuild = 0;
  std::uint8_t versionReserved = 0;
  std::uint16_t versionRelease = 0;
  std::uint16_t versionPadding = 0;
  std::uint16_t powerLimitVersion = 0;
  std::uint16_t powerLimitLength = 0;
  std::uint32_t cpuPowerLimit = 0;
  std::uint32_t gpuPowerLimit = 0;
  std::uint32_t memoryPowerLimit = 0;
  std::uint32_t keyInfoDataSize = 0;  ///< bytes
  std::uint32_t keyInfoDataType = 0;  ///< four-character code
  std::uint8_t keyInfoDataAttributes = 0;
  std::uint8_t keyInfoPadding[3] = {};
  std::uint8_t result = 0;  ///< the SMC's own answer; nobody looks at it
  std::uint8_t status = 0;
  std::uint8_t data8 = 0;  ///< the command
  std::uint8_t commandPadding = 0;
  std::uint32_t data32 = 0;     ///< index of the key, for SMCCommand::keyAtIndex
  std::uint8_t bytes[32] = {};  ///< the value
};

// The kernel checks the size and reads by offset.
static_assert(sizeof(SMCRequestRecord) == 80);
static_assert(offsetof(SMCRequestRecord, key) == 0);
static_assert(offsetof(SMCRequestRecord, versionMajor) == 4);
static_assert(offsetof(SMCRequestRecord, versionMinor) == 5);
static_assert(offsetof(SMCRequestRecord, versionBuild) == 6);
static_assert(offsetof(SMCRequestRecord, versionReserved) == 7);
static_assert(offsetof(SMCRequestRecord, versionRelease) == 8);
static_assert(offsetof(SMCRequestRecord, versionPadding) == 10);
static_assert(offsetof(SMCRequestRecord, powerLimitVersion) == 12);
static_assert(offsetof(SMCRequestRecord, powerLimitLength) == 14);
static_assert(offsetof(SMCRequestRecord, cpuPowerLimit) == 16);
static_assert(offsetof(SMCRequestRecord, gpuPowerLimit) == 20);
static_assert(offsetof(SMCRequestRecord, memoryPowerLimit) == 24);
static_assert(offsetof(SMCRequestRecord, keyInfoDataSize) == 28);
static_assert(offsetof(SMCRequestRecord, keyInfoDataType) == 32);
static_assert(offsetof(SMCRequestRecord, keyInfoDataAttributes) == 36);
static_assert(offsetof(SMCRequestRecord, keyInfoPadding) == 37);
static_assert(offsetof(SMCRequestRecord, result) == 40);
static_assert(offsetof(SMCRequestRecord, status) == 41);
static_assert(offsetof(SMCRequestRecord, data8) == 42);
static_assert(offsetof(SMCRequestRecord, commandPadding) == 43);
static_assert(offsetof(SMCRequestRecord, data32) == 44);
static_assert(offsetof(SMCRequestRecord, bytes) == 48);

/// What the record's data8 asks for.
enum class SMCCommand : std::uint8_t {
  readBytes = 5,    ///< the key's value: bytes
  keyAtIndex = 8,   ///< the key at index data32: key
  readKeyInfo = 9,  ///< size and type of the key's value
};

/// The user client's only method that anybody calls.
inline constexpr std::uint32_t kSMCSelector = 2;

}  // namespace pallimo::ports
