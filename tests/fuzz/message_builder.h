// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <dbus/dbus.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "adapters/linux/link/dbus_messages.h"

namespace pallimo::fuzz {

/// Bytes that are taken one after the other; zeros when there are none left.
class Bytes {
 public:
  explicit Bytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  bool isEmpty() const { return bytes_.empty(); }
  std::uint8_t takeByte() {
    if (bytes_.empty()) return 0;
    const std::uint8_t byte = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return byte;
  }
  double takeDouble() {
    std::array<std::uint8_t, sizeof(double)> parts{};
    for (std::uint8_t& part : parts) part = takeByte();
    double number = 0;
    std::memcpy(&number, parts.data(), sizeof number);
    return number;
  }
  std::span<const std::uint8_t> take(std::size_t count) {
    const auto taken = bytes_.first(std::min(count, bytes_.size()));
    bytes_ = bytes_.subspan(taken.size());
    return taken;
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

/// A message of the bytes' choice: nearly one of ours, with any kind, names and arguments. What
/// it should be read as is told beside it.
struct BuiltMessage {
  adapters::linux::DBusMessagePtr message;
  bool isHelperCall = false;
  bool isResult = false;
};

namespace built {

inline constexpr std::array<const char*, 8> kMembers = {
    "IsResponding", "UnInstallHelper",    "GetVersion",   "RequestPowermetrics",
    "CloseHelper",  "PowermetricsResult", "isResponding", "GetVersion2"};
inline constexpr std::array<std::string_view, 5> kHelperSignatures = {"", "", "", "db", ""};
inline constexpr std::array<const char*, 3> kPaths = {adapters::linux::kLinkObjectPath, "/",
                                                      "/com/ostrovane/powermetrics/other"};

inline void appendArgument(DBusMessageIter& out, Bytes& input) {
  DBusMessageIter inner;
  const std::uint8_t kind = input.takeByte();
  switch (kind % 6) {
    case 0: {
      const dbus_bool_t flag = input.takeByte() % 2;
      dbus_message_iter_append_basic(&out, DBUS_TYPE_BOOLEAN, &flag);
      break;
    }
    case 1: {
      const double number = input.takeDouble();
      dbus_message_iter_append_basic(&out, DBUS_TYPE_DOUBLE, &number);
      break;
    }
    case 2: {
      const auto bytes = input.take(input.takeByte());
      const std::uint8_t* data = bytes.data();
      dbus_message_iter_open_container(&out, DBUS_TYPE_ARRAY, "y", &inner);
      if (!bytes.empty()) {
        dbus_message_iter_append_fixed_array(&inner, DBUS_TYPE_BYTE, &data,
                                             static_cast<int>(bytes.size()));
      }
      dbus_message_iter_close_container(&out, &inner);
      break;
    }
    case 3: {
      const auto bytes = input.take(input.takeByte());
      const std::string text(bytes.begin(), bytes.end());
      const bool isText = dbus_validate_utf8(text.c_str(), nullptr) != FALSE;
      const char* letters = isText ? text.c_str() : "";
      dbus_message_iter_append_basic(&out, DBUS_TYPE_STRING, &letters);
      break;
    }
    case 4: {
      const dbus_uint32_t number = input.takeByte();
      dbus_message_iter_append_basic(&out, DBUS_TYPE_UINT32, &number);
      break;
    }
    default: {
      const dbus_bool_t flag = TRUE;
      dbus_message_iter_open_container(&out, DBUS_TYPE_VARIANT, "b", &inner);
      dbus_message_iter_append_basic(&inner, DBUS_TYPE_BOOLEAN, &flag);
      dbus_message_iter_close_container(&out, &inner);
    }
  }
}

}  // namespace built

inline BuiltMessage buildMessage(Bytes& input) {
  const std::array<const char*, 4> interfaces = {adapters::linux::helperInterface().c_str(),
                                                 adapters::linux::clientInterface().c_str(),
                                                 "com.ostrovane.powermetrics.Helper2", nullptr};
  const int type = input.takeByte() % 5;
  const std::size_t path = input.takeByte() % built::kPaths.size();
  const std::size_t interface = input.takeByte() % interfaces.size();
  const std::size_t member = input.takeByte() % built::kMembers.size();
  BuiltMessage made;
  made.message.reset(dbus_message_new(type == 0 ? DBUS_MESSAGE_TYPE_METHOD_CALL : type));
  DBusMessage* const message = made.message.get();
  dbus_message_set_path(message, built::kPaths[path]);
  // A signal has to have one; any other message may.
  const char* const named = interfaces[interface];
  if (named != nullptr || type == DBUS_MESSAGE_TYPE_SIGNAL) {
    dbus_message_set_interface(message, named == nullptr ? interfaces[0] : named);
  }
  dbus_message_set_member(message, built::kMembers[member]);
  // What each kind of message has to have.
  if (type == DBUS_MESSAGE_TYPE_ERROR) dbus_message_set_error_name(message, "org.example.No");
  if (type == DBUS_MESSAGE_TYPE_ERROR || type == DBUS_MESSAGE_TYPE_METHOD_RETURN) {
    dbus_message_set_reply_serial(message, 1);
  }
  dbus_message_set_no_reply(message, input.takeByte() % 2 == 1 ? TRUE : FALSE);
  dbus_message_set_serial(message, input.takeByte() + 1U);
  DBusMessageIter out;
  dbus_message_iter_init_append(message, &out);
  for (int left = input.takeByte() % 4; left > 0; --left) built::appendArgument(out, input);
  const std::string_view signature = dbus_message_get_signature(message);
  const bool isOurCall = type <= 1 && path == 0;
  made.isHelperCall = isOurCall && interface == 0 && member < built::kHelperSignatures.size() &&
                      signature == built::kHelperSignatures[member];
  made.isResult = isOurCall && interface == 1 && member == 5 && signature == "bay";
  return made;
}

}  // namespace pallimo::fuzz
