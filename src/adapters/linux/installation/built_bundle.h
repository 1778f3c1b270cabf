// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ports/bundle.h"
#include "ports/property_list_reader.h"

namespace pallimo::adapters::linux {

/// The bundle of an app that was built and not packaged: the folder of its executable, with its own
/// info dictionary where a bundle has it, at "Contents/Info.plist". What on a Mac carries its info
/// dictionary within itself has it here beside it, as a property list of the same name with
/// ".plist" appended. Any thread.
class BuiltBundle final : public ports::Bundle {
 public:
  /// `root` is an absolute path; `reader` outlives the object.
  BuiltBundle(std::string root, const ports::PropertyListReader& reader);

  /// Nothing also when the list can't be read, is longer than 64 KB or is no dictionary.
  std::optional<base::PropertyList> infoDictionary(std::string_view path) const override;

 private:
  const std::string root_;
  const ports::PropertyListReader& reader_;
};

}  // namespace pallimo::adapters::linux
