// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "adapters/simulated/recordings/recording.h"
#include "adapters/simulated/sensors/current_step.h"
#include "ports/smc_device.h"

namespace pallimo::adapters::simulated {

// What the kernel answers to a call that fails; numbers of IOKit/IOReturn.h.
inline constexpr auto kIOReturnBadArgument = static_cast<std::int32_t>(0xE00002C2);
inline constexpr auto kIOReturnNotOpen = static_cast<std::int32_t>(0xE00002CD);
inline constexpr auto kIOReturnNotFound = static_cast<std::int32_t>(0xE00002F0);

/// The System Management Controller of a simulated machine: a constant list of keys, and the values
/// of the current step. One caller at a time, as the port says; the step may move meanwhile.
///
/// What can't be found (an index past the end, an unknown key, a value that was not recorded) is
/// kIOReturnNotFound; another selector or command is kIOReturnBadArgument. A failed call leaves
/// `output` alone.
class SimulatedSmcDevice final : public ports::SmcDevice {
 public:
  /// `now` outlives the object.
  SimulatedSmcDevice(RecordedSmc smc, CurrentStep& now);

  /// Every call gives another handle, never 0.
  std::optional<std::uint32_t> open() override;
  std::int32_t callStructMethod(std::uint32_t connection, std::uint32_t selector,
                                const ports::SMCRequestRecord& input,
                                ports::SMCRequestRecord& output) override;
  /// A handle that is not open is ignored.
  void close(std::uint32_t connection) override;

  /// How many handles nobody has closed. For whoever checks its users.
  std::size_t openHandles() const { return handles_.size(); }

 private:
  using Answer = std::optional<ports::SMCRequestRecord>;

  Answer keyAtIndex(std::uint32_t index) const;
  /// "#KEY" has its usual type and size unless the list says otherwise.
  Answer readKeyInfo(std::uint32_t key) const;
  /// "#KEY" answers the key count, most significant byte first, listed or not. Other keys answer
  /// what the step changed, else what is listed.
  Answer readBytes(std::uint32_t key) const;
  SmcBytes valueOf(std::uint32_t key) const;
  const SmcKey* find(std::uint32_t key) const;

  const RecordedSmc smc_;
  CurrentStep& now_;
  /// Places in `smc_.keys` by key number: a sample reads some forty keys out of hundreds. Of two
  /// keys with the same name the first answers.
  const std::unordered_map<std::uint32_t, std::size_t> places_;

  std::unordered_set<std::uint32_t> handles_;
  std::uint32_t lastHandle_ = 0;
};

}  // namespace pallimo::adapters::simulated
