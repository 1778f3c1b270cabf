// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "ports/smc_device.h"

namespace pallimo::fakes {

/// An SMC with the keys that the test gives it, at first none. One caller at a time.
///
/// It takes the record apart byte by byte, as the kernel does, and fails the test on a record with
/// stray contents, on an output record that is not fresh, on a call or close of a handle that is
/// closed, and on a handle that is still open in the end. What a failed call leaves in the output
/// is rubbish.
class FakeSmcDevice final : public ports::SmcDevice {
 public:
  ~FakeSmcDevice() override { EXPECT_EQ(open_.size(), 0u) << "SMC handles are left open"; }

  /// Adds a key, or gives it another type and value. The type has four characters.
  void setKey(const std::string& name, const std::string& type, base::Bytes value) {
    const auto size = static_cast<std::uint32_t>(value.size());
    Key& key = keyNamed(name);
    key.type = type;
    key.size = size;
    key.value = std::move(value);
  }
  void setFloat(const std::string& name, float value) {
    base::Bytes bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    setKey(name, "flt ", std::move(bytes));
  }
  void setFpe2(const std::string& name, std::uint8_t first, std::uint8_t second) {
    setKey(name, "fpe2", {first, second});
  }
  /// The size that the key's information tells.
  void setSize(const std::string& name, std::uint32_t size) { keyNamed(name).size = size; }
  /// What "#KEY" tells instead of the number of keys.
  void setKeyCount(std::uint32_t count) { keyCount_ = count; }
  /// The record's own result and status of successful calls, at first 0.
  void setRecordResult(std::uint8_t result) { recordResult_ = result; }

  void setOpens(bool opens) { opens_ = opens; }
  /// The command fails on this key ("#KEY" for the count).
  void fail(ports::SMCCommand command, const std::string& name) {
    failures_.insert({static_cast<std::uint8_t>(command), name});
  }
  /// The command fails on every key.
  void failAll(ports::SMCCommand command) {
    failingCommands_.insert(static_cast<std::uint8_t>(command));
  }
  void mend() {
    failures_.clear();
    failingCommands_.clear();
  }

  /// Handles that are open.
  std::size_t openHandles() const { return open_.size(); }
  /// What was asked since the last call: "open", "read Te05", "index 0", "info Te05", "close".
  std::vector<std::string> takeCalls() { return std::exchange(calls_, {}); }

  std::optional<std::uint32_t> open() override {
    calls_.push_back("open");
    if (!opens_) return std::nullopt;
    open_.insert(++lastHandle_);
    return lastHandle_;
  }

  std::int32_t callStructMethod(std::uint32_t connection, std::uint32_t selector,
                                const ports::SMCRequestRecord& input,
                                ports::SMCRequestRecord& output) override {
    Raw in{};
    Raw out{};
    std::memcpy(in.data(), &input, in.size());
    std::memcpy(out.data(), &output, out.size());
    EXPECT_EQ(selector, 2u);
    expectNoStrayContents(in);
    EXPECT_EQ(out, Raw{}) << "the output record is not fresh";
    out.fill(kRubbish);
    const bool isOpen = holds(connection);
    const bool succeeded = answer(in, out) && isOpen;
    if (!succeeded) out.fill(kRubbish);
    std::memcpy(&output, out.data(), out.size());
    return succeeded ? 0 : kFailed;
  }

  void close(std::uint32_t connection) override {
    calls_.push_back("close");
    EXPECT_EQ(open_.erase(connection), 1u) << "closed a handle that is not open: " << connection;
  }

 private:
  using Raw = std::array<std::uint8_t, 80>;

  struct Key {
    std::string name;
    std::string type;
    std::uint32_t size = 0;
    base::Bytes value;
  };

  static constexpr std::uint8_t kRubbish = 0x42;  // as a float 48.6 °C
  static constexpr std::int32_t kFailed = -536870206;

  /// 0 is what callers use that could not open; every other handle has to be open.
  bool holds(std::uint32_t connection) const {
    EXPECT_TRUE(connection == 0 || open_.count(connection) == 1)
        << "called on a handle that is not open: " << connection;
    return open_.count(connection) == 1;
  }

  static void expectNoStrayContents(const Raw& in) {
    const std::uint8_t command = in[42];
    EXPECT_EQ(number(in, 28), command == 8 ? 0u : 4u) << "size sent with command " << +command;
    for (std::size_t at = 0; at < in.size(); ++at) {
      const bool isKey = at < 4 && command != 8;
      const bool isIndex = at >= 44 && at < 48 && command == 8;
      const bool isSize = at >= 28 && at < 32;
      if (isKey || isIndex || isSize || at == 42) continue;
      EXPECT_EQ(in[at], 0) << "byte " << at << " of command " << +command;
    }
  }

  bool answer(const Raw& in, Raw& out) {
    out[40] = out[41] = recordResult_;
    switch (in[42]) {
      case 5:
        return read(name(in, 0), out);
      case 8:
        return index(number(in, 44), out);
      case 9:
        return info(name(in, 0), out);
      default:
        ADD_FAILURE() << "unknown command " << +in[42];
        return false;
    }
  }

  bool read(const std::string& wanted, Raw& out) {
    calls_.push_back("read " + wanted);
    if (fails(5, wanted)) return false;
    std::fill(out.begin() + 48, out.end(), std::uint8_t{0});
    const Key* key = find(wanted);
    if (wanted == "#KEY") {
      const auto count = keyCount_.value_or(static_cast<std::uint32_t>(keys_.size()));
      for (std::size_t i = 0; i < 4; ++i) {
        out[48 + i] = static_cast<std::uint8_t>(count >> (24 - 8 * i));
      }
      return true;
    }
    if (key == nullptr) return false;
    std::copy_n(key->value.begin(), std::min<std::size_t>(key->value.size(), 32), out.begin() + 48);
    return true;
  }

  bool index(std::uint32_t at, Raw& out) {
    calls_.push_back("index " + std::to_string(at));
    if (at >= keys_.size() || fails(8, keys_[at].name)) return false;
    put(keys_[at].name, out, 0);
    return true;
  }

  bool info(const std::string& wanted, Raw& out) {
    calls_.push_back("info " + wanted);
    const Key* key = find(wanted);
    if (key == nullptr || fails(9, wanted)) return false;
    std::memcpy(out.data() + 28, &key->size, 4);
    put(key->type, out, 32);
    return true;
  }

  bool fails(std::uint8_t command, const std::string& name) const {
    return failingCommands_.count(command) == 1 || failures_.count({command, name}) == 1;
  }

  // A name's first character is the number's highest byte, the last one in memory.
  static std::string name(const Raw& raw, std::size_t at) {
    std::string text(4, '\0');
    for (std::size_t i = 0; i < 4; ++i) text[i] = static_cast<char>(raw[at + 3 - i]);
    return text;
  }
  static void put(const std::string& text, Raw& raw, std::size_t at) {
    for (std::size_t i = 0; i < 4; ++i) raw[at + 3 - i] = static_cast<std::uint8_t>(text.at(i));
  }
  static std::uint32_t number(const Raw& raw, std::size_t at) {
    std::uint32_t value = 0;
    std::memcpy(&value, raw.data() + at, 4);
    return value;
  }

  const Key* find(std::string_view name) const {
    const auto found = std::find_if(keys_.begin(), keys_.end(),
                                    [&](const Key& candidate) { return candidate.name == name; });
    return found == keys_.end() ? nullptr : &*found;
  }
  Key& keyNamed(const std::string& name) {
    for (Key& key : keys_) {
      if (key.name == name) return key;
    }
    keys_.push_back({.name = name, .type = "flt ", .size = 4, .value = {}});
    return keys_.back();
  }

  std::vector<Key> keys_;
  std::optional<std::uint32_t> keyCount_;
  std::uint8_t recordResult_ = 0;
  bool opens_ = true;
  std::set<std::pair<std::uint8_t, std::string>> failures_;
  std::set<std::uint8_t> failingCommands_;

  std::uint32_t lastHandle_ = 0x1000;
  std::set<std::uint32_t> open_;
  std::vector<std::string> calls_;
};

}  // namespace pallimo::fakes
