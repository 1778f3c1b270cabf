// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_messages.h"

#include <cstdint>
#include <string_view>

#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::adapters::linux {

namespace {

using helper_link::protocol::kMachServiceName;
using helper_link::protocol::kProtocolVersion;

constexpr const char* kIsResponding = "IsResponding";
constexpr const char* kUnInstallHelper = "UnInstallHelper";
constexpr const char* kGetVersion = "GetVersion";
constexpr const char* kRequestPowermetrics = "RequestPowermetrics";
constexpr const char* kCloseHelper = "CloseHelper";
constexpr const char* kPowermetricsResult = "PowermetricsResult";

std::string interfaceName(std::string_view side) {
  std::string name(kMachServiceName);
  name.append(".").append(side).append(std::to_string(kProtocolVersion));
  return name;
}

DBusMessagePtr makeCall(const std::string& interface, const char* method) {
  return DBusMessagePtr(
      dbus_message_new_method_call(nullptr, kLinkObjectPath, interface.c_str(), method));
}

DBusMessagePtr makeOneWayCall(const std::string& interface, const char* method) {
  auto message = makeCall(interface, method);
  if (message) dbus_message_set_no_reply(message.get(), TRUE);
  return message;
}

bool isCall(DBusMessage& message, const std::string& interface, const char* method,
            const char* signature) {
  // The interface carries the protocol's version: a call that names none is not let pass.
  return dbus_message_is_method_call(&message, interface.c_str(), method) != FALSE &&
         dbus_message_has_interface(&message, interface.c_str()) != FALSE &&
         dbus_message_has_path(&message, kLinkObjectPath) != FALSE &&
         dbus_message_has_signature(&message, signature) != FALSE;
}

bool isReply(DBusMessage& message, const char* signature) {
  return dbus_message_get_type(&message) == DBUS_MESSAGE_TYPE_METHOD_RETURN &&
         dbus_message_has_signature(&message, signature) != FALSE;
}

template <class Value>
DBusMessagePtr makeReplyWith(DBusMessage& call, int type, Value value) {
  DBusMessagePtr reply(dbus_message_new_method_return(&call));
  if (!reply) return nullptr;
  if (dbus_message_append_args(reply.get(), type, &value, DBUS_TYPE_INVALID) == FALSE)
    return nullptr;
  return reply;
}

}  // namespace

const std::string& helperInterface() {
  static const std::string name = interfaceName("Helper");
  return name;
}

const std::string& clientInterface() {
  static const std::string name = interfaceName("Client");
  return name;
}

std::string unixSocketAddress(const std::string& path) {
  const std::unique_ptr<char, decltype(&dbus_free)> escaped(dbus_address_escape_value(path.c_str()),
                                                            &dbus_free);
  return std::string("unix:path=") + (escaped ? escaped.get() : "");
}

DBusMessagePtr makeIsResponding() { return makeCall(helperInterface(), kIsResponding); }

DBusMessagePtr makeUnInstallHelper() { return makeOneWayCall(helperInterface(), kUnInstallHelper); }

DBusMessagePtr makeGetVersion() { return makeCall(helperInterface(), kGetVersion); }

DBusMessagePtr makeRequestPowermetrics(double msSampling, bool includeGPU) {
  auto message = makeOneWayCall(helperInterface(), kRequestPowermetrics);
  const dbus_bool_t gpu = includeGPU ? TRUE : FALSE;
  if (!message || dbus_message_append_args(message.get(), DBUS_TYPE_DOUBLE, &msSampling,
                                           DBUS_TYPE_BOOLEAN, &gpu, DBUS_TYPE_INVALID) == FALSE) {
    return nullptr;
  }
  return message;
}

DBusMessagePtr makeCloseHelper() { return makeOneWayCall(helperInterface(), kCloseHelper); }

std::optional<HelperCall> readHelperCall(DBusMessage& message) {
  using Kind = HelperCall::Kind;
  const auto& interface = helperInterface();
  if (isCall(message, interface, kIsResponding, "")) return HelperCall{Kind::kIsResponding};
  if (isCall(message, interface, kUnInstallHelper, "")) return HelperCall{Kind::kUnInstallHelper};
  if (isCall(message, interface, kGetVersion, "")) return HelperCall{Kind::kGetVersion};
  if (isCall(message, interface, kCloseHelper, "")) return HelperCall{Kind::kCloseHelper};
  if (!isCall(message, interface, kRequestPowermetrics, "db")) return std::nullopt;
  HelperCall call{Kind::kRequestPowermetrics};
  dbus_bool_t includeGPU = FALSE;
  if (dbus_message_get_args(&message, nullptr, DBUS_TYPE_DOUBLE, &call.msSampling,
                            DBUS_TYPE_BOOLEAN, &includeGPU, DBUS_TYPE_INVALID) == FALSE) {
    return std::nullopt;
  }
  call.includeGPU = includeGPU != FALSE;
  return call;
}

DBusMessagePtr makeReply(DBusMessage& call, bool value) {
  const dbus_bool_t flag = value ? TRUE : FALSE;
  return makeReplyWith(call, DBUS_TYPE_BOOLEAN, flag);
}

DBusMessagePtr makeReply(DBusMessage& call, const std::string& text) {
  if (dbus_validate_utf8(text.c_str(), nullptr) == FALSE) return nullptr;
  return makeReplyWith(call, DBUS_TYPE_STRING, text.c_str());
}

std::optional<bool> readBoolReply(DBusMessage& reply) {
  dbus_bool_t value = FALSE;
  if (!isReply(reply, "b") || dbus_message_get_args(&reply, nullptr, DBUS_TYPE_BOOLEAN, &value,
                                                    DBUS_TYPE_INVALID) == FALSE) {
    return std::nullopt;
  }
  return value != FALSE;
}

std::optional<std::string> readTextReply(DBusMessage& reply) {
  const char* text = nullptr;
  if (!isReply(reply, "s") ||
      dbus_message_get_args(&reply, nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID) == FALSE) {
    return std::nullopt;
  }
  return std::string(text);
}

DBusMessagePtr makePowermetricsResult(const std::optional<base::Bytes>& document) {
  auto message = makeOneWayCall(clientInterface(), kPowermetricsResult);
  const bool isSendable = document && document->size() <= kLongestDocument;
  const dbus_bool_t isPresent = isSendable ? TRUE : FALSE;
  // libdbus wants an address even for an empty array.
  static constexpr std::uint8_t kNothing = 0;
  const std::uint8_t* bytes = isSendable && !document->empty() ? document->data() : &kNothing;
  const int count = isSendable ? static_cast<int>(document->size()) : 0;
  if (!message ||
      dbus_message_append_args(message.get(), DBUS_TYPE_BOOLEAN, &isPresent, DBUS_TYPE_ARRAY,
                               DBUS_TYPE_BYTE, &bytes, count, DBUS_TYPE_INVALID) == FALSE) {
    return nullptr;
  }
  return message;
}

std::optional<PowermetricsResult> readPowermetricsResult(DBusMessage& message) {
  if (!isCall(message, clientInterface(), kPowermetricsResult, "bay")) return std::nullopt;
  dbus_bool_t isPresent = FALSE;
  const std::uint8_t* bytes = nullptr;
  int count = 0;
  if (dbus_message_get_args(&message, nullptr, DBUS_TYPE_BOOLEAN, &isPresent, DBUS_TYPE_ARRAY,
                            DBUS_TYPE_BYTE, &bytes, &count, DBUS_TYPE_INVALID) == FALSE) {
    return std::nullopt;
  }
  PowermetricsResult result;
  if (isPresent != FALSE) result.document.emplace(bytes, bytes + count);
  return result;
}

}  // namespace pallimo::adapters::linux
