// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The fakes of the system's services: authorisation, installation, signatures, the log.

#include <Security/Authorization.h>
#include <Security/Security.h>
#include <ServiceManagement/ServiceManagement.h>
#include <os/log.h>

#include <cstring>
#include <string>

#include "darwin/fakes/fake_mac.h"

using pallimo::darwin::FakeThing;
using pallimo::darwin::mac;

// Nobody looks inside.
struct os_log_s {};
struct __CFString {};

namespace {

const __CFString kDomain;

std::string nameOf(AuthorizationRef authorization, const char* function) {
  const auto name = static_cast<mach_port_t>(reinterpret_cast<std::uintptr_t>(authorization));
  return mac().names.find(name, "authorization", function) == nullptr ? "nobody" : "consent";
}

}  // namespace

extern "C" {

const CFStringRef kSMDomainSystemLaunchd = &kDomain;
os_log_s _os_log_default;

OSStatus AuthorizationCreate(const AuthorizationRights* rights,
                             const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                             AuthorizationRef* authorization) {
  mac().expect(rights == nullptr && environment == nullptr && flags == 0,
               "AuthorizationCreate with rights, an environment or flags");
  mac().journal.emplace_back("AuthorizationCreate");
  if (mac().fails("AuthorizationCreate")) return -60008;
  if (mac().authorizationStatus == 0 && mac().givesAuthorization) {
    const std::uintptr_t name = mac().names.add({.kind = "authorization"});
    *authorization = reinterpret_cast<AuthorizationRef>(name);
  }
  return mac().authorizationStatus;
}

OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* environment,
                                 AuthorizationFlags flags, AuthorizationRights** authorizedRights) {
  mac().expect(environment == nullptr && authorizedRights == nullptr,
               "AuthorizationCopyRights with an environment or a result");
  mac().expect(rights->count == 1, "AuthorizationCopyRights of more than one right");
  const AuthorizationItem& item = *rights->items;
  mac().expect(item.valueLength == 0 && item.value == nullptr && item.flags == 0,
               "a right with a value or flags");
  mac().journal.push_back("AuthorizationCopyRights " +
                          nameOf(authorization, "AuthorizationCopyRights") + " " + item.name + " " +
                          std::to_string(flags));
  return mac().fails("AuthorizationCopyRights") ? -60005 : mac().rightStatus;
}

Boolean SMJobBless(CFStringRef domain, CFStringRef executableLabel, AuthorizationRef authorization,
                   CFErrorRef* error) {
  mac().expect(domain == kSMDomainSystemLaunchd, "SMJobBless in another domain");
  const auto& label = mac().objects.read<std::string>(executableLabel, "SMJobBless");
  mac().journal.push_back("SMJobBless " + label + " " + nameOf(authorization, "SMJobBless"));
  if (!mac().fails("SMJobBless") && mac().blesses) return true;
  if (error != nullptr) {
    const void* const made = mac().objects.make(FakeThing{"error", nullptr});
    *error = static_cast<CFErrorRef>(const_cast<void*>(made));
  }
  return false;
}

OSStatus SecRequirementCreateWithString(CFStringRef text, SecCSFlags flags,
                                        SecRequirementRef* requirement) {
  mac().expect(flags == 0, "SecRequirementCreateWithString with flags");
  const auto& rule = mac().objects.read<std::string>(text, "SecRequirementCreateWithString");
  if (mac().fails("SecRequirementCreateWithString") || rule.find("anchor") == std::string::npos) {
    return -67052;
  }
  const void* const made = mac().objects.make(FakeThing{"requirement", nullptr});
  *requirement = static_cast<SecRequirementRef>(const_cast<void*>(made));
  return 0;
}

void _os_log_impl(void* dso, os_log_t log, os_log_type_t type, const char* format, uint8_t* buffer,
                  uint32_t size) {
  mac().expect(dso == &__dso_handle && log == OS_LOG_DEFAULT && type == OS_LOG_TYPE_DEFAULT,
               "a line for another log");
  // One argument: a text, public, of which the address is kept.
  constexpr uint8_t kOneText[] = {2, 1, 0x22, 8};
  const bool isOneText = size == 12 && std::memcmp(buffer, kOneText, sizeof kOneText) == 0 &&
                         std::string(format) == "%{public}s";
  mac().expect(isOneText, "a line that is not one public text");
  if (!isOneText) return;
  const char* text = nullptr;
  std::memcpy(&text, buffer + sizeof kOneText, sizeof text);
  mac().journal.push_back("log " + std::string(text));
}

}  // extern "C"
