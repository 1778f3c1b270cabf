// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <variant>

#include "adapters/simulated/recordings/recording.h"
#include "adapters/simulated/sensors/current_step.h"
#include "base/mutex.h"
#include "ports/accelerator_registry.h"

namespace pallimo::adapters::simulated {

/// The I/O registry of a simulated machine, which knows the class "IOAccelerator" alone. Any
/// thread.
///
/// A walk goes over the accelerators of the step at which it began. An entry's properties can't be
/// read before `readFailures` attempts have failed, counted anew for the entry of every walk. A
/// handle that nobody holds any more has no entries and no properties, and releasing it does
/// nothing, as with the kernel's.
class SimulatedAcceleratorRegistry final : public ports::AcceleratorRegistry {
 public:
  /// `now` outlives the object.
  explicit SimulatedAcceleratorRegistry(CurrentStep& now) : now_(now) {}

  /// Another class gives the iterator 0. Nothing when the search fails at the current step.
  std::optional<std::uint32_t> matchingServices(std::string_view className) override;
  std::uint32_t next(std::uint32_t iterator) override;
  std::optional<base::PropertyList> properties(std::uint32_t entry) override;
  void release(std::uint32_t object) override;

  /// How many entries and iterators nobody has released. For whoever checks its users.
  std::size_t openHandles() const;

 private:
  struct Iterator {
    std::shared_ptr<const RecordingStep> step;  // its accelerators are there
    std::size_t next = 0;
  };
  struct Entry {
    std::shared_ptr<const RecordedAccelerator> accelerator;
    std::uint32_t failuresLeft = 0;
  };
  using Object = std::variant<Iterator, Entry>;

  std::uint32_t keep(Object object) PALLIMO_REQUIRES(mutex_);
  /// The entry, unless this read of it fails.
  std::shared_ptr<const RecordedAccelerator> readable(std::uint32_t entry);

  CurrentStep& now_;

  mutable base::Mutex mutex_;
  std::unordered_map<std::uint32_t, Object> objects_ PALLIMO_GUARDED_BY(mutex_);
  std::uint32_t lastHandle_ PALLIMO_GUARDED_BY(mutex_) = 0;
};

}  // namespace pallimo::adapters::simulated
