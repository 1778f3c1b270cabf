// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/property_list.h"

namespace pallimo::ports {

/// The part of the I/O registry that lists graphics accelerators. Handles are the kernel's: numbers
/// other than 0 that stand for an object until it is released. Any thread.
class AcceleratorRegistry {
 public:
  virtual ~AcceleratorRegistry() = default;

  /// An iterator over the services of a class ("IOAccelerator"), to be released; nothing when the
  /// search fails. A search without a match may give an iterator of 0, which has no entries.
  virtual std::optional<std::uint32_t> matchingServices(std::string_view className) = 0;
  /// The iterator's next entry, to be released; 0 at the end.
  virtual std::uint32_t next(std::uint32_t iterator) = 0;
  /// A copy of the entry's properties: a dictionary. A read that succeeds without one is an empty
  /// one; a value of a kind that a property list lacks (a set, a null) is left out, and so is an
  /// entry under a key that is no text; a boolean stays a boolean. Nothing only when the kernel's
  /// call fails: callers then read again until it succeeds, so an entry that is merely odd must
  /// never give nothing.
  virtual std::optional<base::PropertyList> properties(std::uint32_t entry) = 0;
  /// Lets go of an entry or an iterator.
  virtual void release(std::uint32_t object) = 0;
};

}  // namespace pallimo::ports
