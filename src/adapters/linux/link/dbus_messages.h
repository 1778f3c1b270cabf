// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <dbus/dbus.h>

#include <memory>
#include <optional>
#include <string>

#include "base/bytes.h"

namespace pallimo::adapters::linux {

// The messages of the helper link on D-Bus: their names, how they are built and how they are read.
// Any thread; a message belongs to whoever holds it until it is sent.
//
//   com.ostrovane.powermetrics.Helper1          com.ostrovane.powermetrics.Client1
//     IsResponding() -> b                         PowermetricsResult(b hasDocument, ay document)
//     UnInstallHelper()
//     GetVersion() -> s
//     RequestPowermetrics(d msSampling, b includeGPU)
//     CloseHelper()
//
// Both objects live at /com/ostrovane/powermetrics. The digit is the protocol's version. Messages
// without a result are sent with the no-reply flag. Building gives an empty pointer when memory is
// short; reading gives nothing for a message with another name, interface, path or signature.

struct DBusMessageUnref {
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using DBusMessagePtr = std::unique_ptr<DBusMessage, DBusMessageUnref>;

struct DBusConnectionUnref {
  void operator()(DBusConnection* connection) const { dbus_connection_unref(connection); }
};
/// One reference; a private connection must have been closed before the last one goes.
using DBusConnectionPtr = std::unique_ptr<DBusConnection, DBusConnectionUnref>;

inline constexpr const char* kLinkObjectPath = "/com/ostrovane/powermetrics";
const std::string& helperInterface();  ///< what the helper exports
const std::string& clientInterface();  ///< what the app exports

/// A longer document is sent as an absent one; twice what the helper lets a run print. libdbus
/// itself aborts the program over arrays beyond 64 MiB.
inline constexpr std::size_t kLongestDocument = 32u << 20;

/// The address of a socket in libdbus's words, with what is special in them escaped.
std::string unixSocketAddress(const std::string& path);

// From the app to the helper.
DBusMessagePtr makeIsResponding();
DBusMessagePtr makeUnInstallHelper();
DBusMessagePtr makeGetVersion();
DBusMessagePtr makeRequestPowermetrics(double msSampling, bool includeGPU);
DBusMessagePtr makeCloseHelper();

/// One of the five messages.
struct HelperCall {
  enum class Kind {
    kIsResponding,
    kUnInstallHelper,
    kGetVersion,
    kRequestPowermetrics,
    kCloseHelper
  };
  Kind kind;
  double msSampling = 0;    ///< milliseconds; of kRequestPowermetrics, any number whatever
  bool includeGPU = false;  ///< of kRequestPowermetrics
};
std::optional<HelperCall> readHelperCall(DBusMessage& message);

// Replies to IsResponding and GetVersion. A text that is not UTF-8 can't be sent: no message.
DBusMessagePtr makeReply(DBusMessage& call, bool value);
DBusMessagePtr makeReply(DBusMessage& call, const std::string& text);
std::optional<bool> readBoolReply(DBusMessage& reply);
std::optional<std::string> readTextReply(DBusMessage& reply);

// From the helper to the app.
DBusMessagePtr makePowermetricsResult(const std::optional<base::Bytes>& document);

/// A result as it came; its document may be absent.
struct PowermetricsResult {
  std::optional<base::Bytes> document;
};
std::optional<PowermetricsResult> readPowermetricsResult(DBusMessage& message);

}  // namespace pallimo::adapters::linux
