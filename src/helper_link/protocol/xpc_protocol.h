// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/bytes.h"

namespace pallimo::helper_link::protocol {

/// Raised whenever a message changes its name, arguments or meaning. Every transport puts it into
/// the name of its interface, so that two sides of different versions never misread each other.
inline constexpr int kProtocolVersion = 1;

/// The Mach service under which the helper is registered, its launchd label and its file name.
inline constexpr std::string_view kMachServiceName = "com.ostrovane.powermetrics";

/// Option of a connection: look the service up in the system (privileged) domain.
inline constexpr unsigned kConnectionPrivileged = 4096;

/// What the helper answers. On the app's side calling one of these sends the message and returns
/// at once; nothing is reported when the helper is gone, and a reply that never comes is never
/// called. On the helper's side the service implements them.
class XPCProtocol {
 public:
  virtual ~XPCProtocol() = default;

  /// Liveness probe; the helper replies true.
  virtual void isResponding(std::function<void(bool)> completion) = 0;
  /// The helper removes its own job and files. One-way.
  virtual void unInstallHelper() = 0;
  /// The helper replies with its short version string.
  virtual void getVersion(std::function<void(std::string)> completion) = 0;
  /// Runs one `powermetrics` sample of `msSampling` milliseconds, with the GPU samplers if
  /// `includeGPU`. One-way; the document arrives later through ClientProtocol.
  virtual void requestPowermetrics(double msSampling, bool includeGPU) = 0;
  /// The helper stops; sent when the app ends. One-way.
  virtual void closeHelper() = 0;
};

/// What the app answers on the same connection.
class ClientProtocol {
 public:
  virtual ~ClientProtocol() = default;

  /// The raw property-list bytes of one sample; absent when the run gave none. The n-th result of
  /// a connection answers its n-th request.
  virtual void powermetricsResult(std::optional<base::Bytes> document) = 0;
};

}  // namespace pallimo::helper_link::protocol
