// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "fakes/memory_user_defaults.h"
#include "ports/background_queue.h"
#include "ports/processor_ticks.h"
#include "ports/random_numbers.h"
#include "ports/system_controls.h"
#include "ports/user_defaults.h"
#include "scenarios/faulty_world.h"

namespace pallimo::scenarios {

// Ports that fail, and recover, in ways in which the doubles of the other tests do not.

/// Counters that each call moves on by one sample's ticks: processor 0 is busy for a quarter of
/// them, processor 1 for three quarters, a third one for none. Since boot the three were busy for a
/// tenth, a fifth and none of so many ticks that a few samples do not show in that share.
class SteppingTicks final : public ports::ProcessorTicks {
 public:
  explicit SteppingTicks(const FaultyWorld& world) : world_(world) {}

  std::optional<std::vector<ports::ProcessorTickCounts>> read() override {
    if (!world_.ticksStandStill) ++samples_;
    if (world_.ticksFail) return std::nullopt;
    const std::uint32_t n = samples_;
    std::vector<ports::ProcessorTickCounts> counts = {{100'000'000 + n, 0, 900'000'000 + 3 * n, 0},
                                                      {200'000'000 + 2 * n, n, 800'000'000 + n, 0},
                                                      {0, 0, 1'000'000'000 + 4 * n, 0}};
    counts.resize(world_.processors);
    return counts;
  }

 private:
  const FaultyWorld& world_;
  std::uint32_t samples_ = 0;
};

/// The kernel's variables as they are at the moment.
class ChangingControls final : public ports::SystemControls {
 public:
  explicit ChangingControls(const FaultyWorld& world) : world_(world) {}

  std::optional<base::Bytes> bytes(std::string_view name) const override {
    if (name == "hw.cputype") return number(world_.cpuType);
    if (name == "hw.model") return text(world_.model);
    if (name == "machdep.cpu.brand_string") return text(world_.chip);
    if (name == "hw.perflevel1.logicalcpu") return number(world_.efficiencyCores);
    if (name == "hw.perflevel0.logicalcpu") return number(world_.performanceCores);
    return std::nullopt;
  }

 private:
  static std::optional<base::Bytes> number(std::optional<std::int32_t> value) {
    if (!value) return std::nullopt;
    base::Bytes bytes(sizeof *value);
    std::memcpy(bytes.data(), &*value, sizeof *value);
    return bytes;
  }
  static std::optional<base::Bytes> text(const std::optional<std::string>& value) {
    if (!value) return std::nullopt;
    base::Bytes bytes(value->begin(), value->end());
    bytes.push_back(0);
    return bytes;
  }

  const FaultyWorld& world_;
};

/// Settings that keep what the test writes and, while the world says so, nothing that the program
/// does.
class ReadOnlyDefaults final : public ports::UserDefaults {
 public:
  explicit ReadOnlyDefaults(const FaultyWorld& world) : world_(world) {}

  fakes::MemoryUserDefaults stored;

  bool contains(std::string_view key) const override { return stored.contains(key); }
  bool boolForKey(std::string_view key) const override { return stored.boolForKey(key); }
  std::int64_t integerForKey(std::string_view key) const override {
    return stored.integerForKey(key);
  }
  double doubleForKey(std::string_view key) const override { return stored.doubleForKey(key); }
  std::optional<std::string> textForKey(std::string_view key) const override {
    return stored.textForKey(key);
  }
  void setBool(std::string_view key, bool value) override {
    if (world_.storesSettings) stored.setBool(key, value);
  }
  void setInteger(std::string_view key, std::int64_t value) override {
    if (world_.storesSettings) stored.setInteger(key, value);
  }
  void setText(std::string_view key, std::string_view value) override {
    if (world_.storesSettings) stored.setText(key, value);
  }
  void remove(std::string_view key) override {
    if (world_.storesSettings) stored.remove(key);
  }
  base::Subscription observeChanges(std::function<void()> observer) override {
    return stored.observeChanges(std::move(observer));
  }

 private:
  const FaultyWorld& world_;
};

/// Runs its tasks at once; while it is stuck they wait. On the caller's thread: whoever queues
/// holds no lock, and a thread for each of a hundred thousand tasks would be most of the test.
class StickyBackgroundQueue final : public ports::BackgroundQueue {
 public:
  explicit StickyBackgroundQueue(const FaultyWorld& world) : world_(world) {}

  void async(std::function<void()> task) override {
    waiting_.push_back(std::move(task));
    run();
  }
  void run() {
    while (!world_.backgroundIsStuck && !waiting_.empty()) {
      const auto task = std::move(waiting_.front());
      waiting_.erase(waiting_.begin());
      task();
    }
  }

 private:
  const FaultyWorld& world_;
  std::vector<std::function<void()>> waiting_;
};

/// 1, 2, 3 and so on, or the same number again and again.
class RepeatingNumbers final : public ports::RandomNumbers {
 public:
  explicit RepeatingNumbers(const FaultyWorld& world) : world_(world) {}

  std::uint64_t next() override {
    base::MutexLock lock(mutex_);
    return world_.everyRandomNumber ? *world_.everyRandomNumber : ++last_;
  }

 private:
  const FaultyWorld& world_;
  base::Mutex mutex_;
  std::uint64_t last_ PALLIMO_GUARDED_BY(mutex_) = 0;
};

}  // namespace pallimo::scenarios
