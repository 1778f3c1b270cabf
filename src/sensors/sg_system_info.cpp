// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/apple_silicon.h"

#include <cstdint>

namespace pallimo::sensors {

namespace {

constexpr std::int32_t kFamilyMask = 0xff;
constexpr std::int32_t kFamilyArm = 12;
constexpr std::int32_t kFamilyX86 = 7;

}  // namespace

std::optional<std::string_view> otherProcessorName(const ports::SystemControls& controls) {
  const std::optional<std::int64_t> value = controls.integer("hw.cputype");
  if (!value) return "error in CPU type";
  // The variable has 32 bits; a source that widens it without its sign still gives -1 here.
  const auto type = static_cast<std::int32_t>(*value);
  if (type == -1) return "error in CPU type";
  switch (type & kFamilyMask) {
    case kFamilyArm:
      return std::nullopt;
    case kFamilyX86:
      return "x86";
    default:
      return "unknown";
  }
}

bool isAppleSilicon(const ports::SystemControls& controls) {
  const std::optional<std::string_view> name = otherProcessorName(controls);
  return !name || *name == "ARM";
}

}  // namespace pallimo::sensors
