// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <mach/mach.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace pallimo::darwin {

/// The Mach names that the task holds: what each stands for, and how many references it has. A name
/// that is gone is not used again, so that whoever uses one is told.
class FakeNames {
 public:
  struct Name {
    std::string kind;               ///< "service AppleSMC"
    std::uint32_t handle = 0;       ///< of the simulated machine
    std::function<void()> atEnd{};  ///< when the last reference goes
    int references = 1;
  };

  explicit FakeNames(std::function<void(std::string)> complain) : complain_(std::move(complain)) {}

  mach_port_t add(Name name) {
    names_.emplace(++last_, std::move(name));
    return last_;
  }
  /// One more reference to the name of that kind, which is made if there is none.
  mach_port_t addReference(const std::string& kind) {
    for (auto& [name, known] : names_) {
      if (known.kind != kind || known.references == 0) continue;
      ++known.references;
      return name;
    }
    return add({.kind = kind});
  }

  /// The name if it is held and its kind begins so; else complains and gives nullptr.
  Name* find(mach_port_t name, const std::string& kind, const char* function) {
    const auto found = names_.find(name);
    if (found != names_.end() && found->second.references > 0 &&
        found->second.kind.starts_with(kind)) {
      return &found->second;
    }
    complain_(std::string(function) + " of a name that is no " + kind);
    return nullptr;
  }
  bool release(mach_port_t name, const std::string& kind, const char* function) {
    Name* found = find(name, kind, function);
    if (found == nullptr) return false;
    if (--found->references == 0 && found->atEnd) found->atEnd();
    return true;
  }

  /// What is still referenced: "2 x main port".
  std::vector<std::string> held() const {
    std::map<std::string, int> counts;
    for (const auto& [name, known] : names_) counts[known.kind] += known.references;
    std::vector<std::string> lines;
    for (const auto& [kind, count] : counts) {
      if (count > 0) lines.push_back(std::to_string(count) + " x " + kind);
    }
    return lines;
  }

 private:
  std::function<void(std::string)> complain_;
  std::map<mach_port_t, Name> names_;
  mach_port_t last_ = 0x100;
};

}  // namespace pallimo::darwin
