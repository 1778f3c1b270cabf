// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pallimo::sampling {

/// One cluster of processors as the document lists it, whatever it is called: what the panels do
/// not know the name of is here all the same.
struct Cluster {
  std::optional<std::string> name;  ///< nothing when it is no text
  std::optional<double> frequency;  ///< MHz; nothing when it is no number
  std::vector<std::int64_t> cpus;   ///< logical CPU numbers, in document order
  bool operator==(const Cluster&) const = default;
};

}  // namespace pallimo::sampling
