// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "base/property_list.h"
#include "ports/accelerator_registry.h"

namespace pallimo::fakes {

/// A registry with the accelerators that the test adds, at first none. Any thread.
///
/// Fails the test on a handle that is used or released after its release, not released in the end,
/// or of the wrong kind: an entry is no iterator, and only an entry has properties.
class FakeAcceleratorRegistry final : public ports::AcceleratorRegistry {
 public:
  /// What a search gives that finds nothing.
  enum class EmptySearch { iterator, zero };

  ~FakeAcceleratorRegistry() override {
    EXPECT_EQ(held_.size(), 0u) << "registry handles are not released";
  }

  /// The properties of an Apple GPU at work, in the types that the driver publishes.
  static base::PropertyListDictionary appleGPU(const std::string& model, std::int64_t percent) {
    base::PropertyListDictionary statistics;
    statistics.emplace_back("Device Utilization %", base::PropertyList(percent));
    base::PropertyListDictionary properties;
    properties.emplace_back("vendor-id", base::PropertyList(base::Bytes{0x6B, 0x10, 0, 0}));
    properties.emplace_back("model", base::PropertyList(model));
    properties.emplace_back("PerformanceStatistics", base::PropertyList(std::move(statistics)));
    return properties;
  }

  /// An entry whose properties can't be read the first `failures` times of each search.
  void add(base::PropertyListDictionary properties, int failures = 0) {
    base::MutexLock lock(mutex_);
    entries_.push_back({std::move(properties), failures});
  }
  void clear() {
    base::MutexLock lock(mutex_);
    entries_.clear();
  }
  void setSearchFails(bool fails) {
    base::MutexLock lock(mutex_);
    searchFails_ = fails;
  }
  void setEmptySearch(EmptySearch gives) {
    base::MutexLock lock(mutex_);
    emptySearch_ = gives;
  }

  /// Handles that are not released.
  std::size_t heldHandles() const {
    base::MutexLock lock(mutex_);
    return held_.size();
  }
  /// What was asked since the last call: "search IOAccelerator", "next", "properties of 0",
  /// "release 0", "release iterator"; entries by their number.
  std::vector<std::string> takeCalls() {
    base::MutexLock lock(mutex_);
    return std::exchange(calls_, {});
  }

  std::optional<std::uint32_t> matchingServices(std::string_view className) override {
    base::MutexLock lock(mutex_);
    calls_.push_back("search " + std::string(className));
    if (searchFails_) return std::nullopt;
    const bool findsSome = className == "IOAccelerator" && !entries_.empty();
    if (!findsSome && emptySearch_ == EmptySearch::zero) return 0;
    Handle iterator;
    iterator.kind = Kind::iterator;
    iterator.number = findsSome ? 0 : entries_.size();
    return hold(iterator);
  }

  std::uint32_t next(std::uint32_t iterator) override {
    base::MutexLock lock(mutex_);
    calls_.push_back("next");
    Handle* handle = find(iterator, Kind::iterator);
    if (handle == nullptr || handle->number >= entries_.size()) return 0;
    Handle entry;
    entry.number = handle->number++;
    entry.failuresLeft = entries_[entry.number].failures;
    return hold(entry);
  }

  /// Of a wrong handle an empty dictionary, so that whoever reads again does come to an end.
  std::optional<base::PropertyList> properties(std::uint32_t entry) override {
    base::MutexLock lock(mutex_);
    Handle* handle = find(entry, Kind::entry);
    if (handle == nullptr) return base::PropertyList();
    calls_.push_back("properties of " + std::to_string(handle->number));
    if (handle->failuresLeft-- > 0) return std::nullopt;
    return base::PropertyList(entries_.at(handle->number).properties);
  }

  void release(std::uint32_t object) override {
    base::MutexLock lock(mutex_);
    const Handle* handle = find(object);
    if (handle == nullptr) return;
    calls_.push_back(handle->kind == Kind::iterator ? "release iterator"
                                                    : "release " + std::to_string(handle->number));
    held_.erase(object);
  }

 private:
  struct Entry {
    base::PropertyListDictionary properties;
    int failures = 0;
  };
  enum class Kind { entry, iterator };
  struct Handle {
    Kind kind = Kind::entry;
    std::size_t number = 0;  ///< of the entry; of an iterator's next entry
    int failuresLeft = 0;
  };

  std::uint32_t hold(const Handle& handle) PALLIMO_REQUIRES(mutex_) {
    held_[++lastHandle_] = handle;
    return lastHandle_;
  }
  Handle* find(std::uint32_t object) PALLIMO_REQUIRES(mutex_) {
    const auto found = held_.find(object);
    if (found != held_.end()) return &found->second;
    ADD_FAILURE() << "handle " << object << " is dead";
    return nullptr;
  }
  Handle* find(std::uint32_t object, Kind kind) PALLIMO_REQUIRES(mutex_) {
    Handle* handle = find(object);
    if (handle == nullptr || handle->kind == kind) return handle;
    ADD_FAILURE() << "handle " << object
                  << (kind == Kind::iterator ? " is no iterator" : " is no entry");
    return nullptr;
  }

  mutable base::Mutex mutex_;
  std::vector<Entry> entries_ PALLIMO_GUARDED_BY(mutex_);
  bool searchFails_ PALLIMO_GUARDED_BY(mutex_) = false;
  EmptySearch emptySearch_ PALLIMO_GUARDED_BY(mutex_) = EmptySearch::iterator;
  std::uint32_t lastHandle_ PALLIMO_GUARDED_BY(mutex_) = 0x2000;
  std::map<std::uint32_t, Handle> held_ PALLIMO_GUARDED_BY(mutex_);
  std::vector<std::string> calls_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
