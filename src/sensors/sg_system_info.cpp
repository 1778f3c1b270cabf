// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sg_system_info.h"

#include <cstring>

#include "base/fatal.h"
#include "base/utf8.h"

namespace pallimo::sensors {

namespace {

constexpr std::int32_t kFamilyMask = 0xff;
constexpr std::int32_t kFamilyArm = 12;
constexpr std::int32_t kFamilyX86 = 7;

}  // namespace

std::string SGSystemInfo::sysctlString(std::string_view name) const {
  const std::optional<base::Bytes> value = controls_.bytes(name);
  if (!value) base::fatal("The kernel variable " + std::string(name) + " can't be read.");
  auto text = base::textBeforeNul(*value);
  if (!text) base::fatal("The kernel variable " + std::string(name) + " is empty or does not end.");
  return *std::move(text);
}

std::string SGSystemInfo::hardwareModel() const { return sysctlString("hw.model"); }

std::string SGSystemInfo::cpuBrandString() const {
  return sysctlString("machdep.cpu.brand_string");
}

std::optional<std::int32_t> SGSystemInfo::sysctlInt32(std::string_view name) const {
  const std::optional<base::Bytes> value = controls_.bytes(name);
  std::int32_t number = 0;
  if (!value || value->size() != sizeof number) return std::nullopt;
  std::memcpy(&number, value->data(), sizeof number);
  return number;
}

std::optional<std::int32_t> SGSystemInfo::efficiencyCores() const {
  return sysctlInt32("hw.perflevel1.logicalcpu");
}

std::optional<std::int32_t> SGSystemInfo::performanceCores() const {
  return sysctlInt32("hw.perflevel0.logicalcpu");
}

std::optional<std::string_view> SGSystemInfo::otherProcessorName() const {
  const std::optional<std::int32_t> type = sysctlInt32("hw.cputype");
  if (!type || *type == -1) return "error in CPU type";
  switch (*type & kFamilyMask) {
    case kFamilyArm:
      return std::nullopt;
    case kFamilyX86:
      return "x86";
    default:
      return "unknown";
  }
}

bool SGSystemInfo::isAppleSilicon() const { return !otherProcessorName(); }

}  // namespace pallimo::sensors
