// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <Security/Authorization.h>
#include <ServiceManagement/ServiceManagement.h>
#include <dlfcn.h>
#include <os/log.h>

#include <cstdio>

#include "adapters/macos/c_adapters.h"
#include "adapters/macos/system_values.h"

// SMJobBless is to be replaced from macOS 13 on, by something that needs another kind of helper.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace pallimo::adapters::macos {
namespace {

using ExecuteWithPrivileges = OSStatus (*)(AuthorizationRef authorization, const char* pathToTool,
                                           AuthorizationFlags options, char* const* arguments,
                                           FILE** communicationsPipe);

/// The reference is never freed, as the port promises: a consent lasts as long as the process.
struct Token final : ports::AuthorizationToken {
  explicit Token(AuthorizationRef kept) : reference(kept) {}

  const AuthorizationRef reference;
};

AuthorizationRef referenceOf(const ports::AuthorizationToken& token) {
  return static_cast<const Token&>(token).reference;  // a Mac has no other tokens
}

class AuthorizationServices final : public ports::AuthorizationServices {
 public:
  ports::AuthorizationAttempt createAuthorization() override {
    ports::AuthorizationAttempt attempt;
    AuthorizationRef reference = nullptr;
    attempt.status = AuthorizationCreate(nullptr, kAuthorizationEmptyEnvironment,
                                         kAuthorizationFlagDefaults, &reference);
    if (reference != nullptr) attempt.token = std::make_shared<Token>(reference);
    return attempt;
  }

  std::int32_t copyRight(const ports::AuthorizationToken& token, std::string_view right,
                         std::uint32_t flags) override {
    const std::string name(right);
    AuthorizationItem item = {name.c_str(), 0, nullptr, 0};
    const AuthorizationRights rights = {1, &item};
    return AuthorizationCopyRights(referenceOf(token), &rights, kAuthorizationEmptyEnvironment,
                                   flags, nullptr);
  }

  std::optional<std::int32_t> executeWithPrivileges(
      const ports::AuthorizationToken& token, const std::string& path,
      const std::vector<std::string>& arguments) override {
    void* const found = dlsym(RTLD_DEFAULT, "AuthorizationExecuteWithPrivileges");
    if (found == nullptr) return std::nullopt;
    std::vector<char*> pointers;
    for (const auto& text : arguments) pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return reinterpret_cast<ExecuteWithPrivileges>(found)(
        referenceOf(token), path.c_str(), kAuthorizationFlagDefaults, pointers.data(), nullptr);
  }
};

class HelperInstaller final : public ports::HelperInstaller {
 public:
  bool bless(std::string_view label, const ports::AuthorizationToken& token) override {
    const auto name = cfText(label);
    // Nobody reads the error, so that none is asked for.
    return name && SMJobBless(kSMDomainSystemLaunchd, name.get(), referenceOf(token), nullptr) != 0;
  }
};

std::optional<base::PropertyList> infoDictionaryAt(CFURLRef url) {
  const CFRef dictionary(CFBundleCopyInfoDictionaryForURL(url));
  return propertyListFrom(dictionary.get());
}

class Bundle final : public ports::Bundle {
 public:
  std::optional<base::PropertyList> infoDictionary(std::string_view path) const override {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    const CFRef root(bundle == nullptr ? nullptr : CFBundleCopyBundleURL(bundle));
    if (!root) return std::nullopt;
    if (path.empty()) return infoDictionaryAt(root.get());
    const auto inside = cfText(path);
    if (!inside) return std::nullopt;
    const CFRef url(CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, root.get(),
                                                          inside.get(), false));
    return url ? infoDictionaryAt(url.get()) : std::nullopt;
  }
};

class SystemLog final : public ports::SystemLog {
 public:
  void write(std::string_view line) override {
    const std::string text(line);
    os_log(OS_LOG_DEFAULT, "%{public}s", text.c_str());
  }
};

}  // namespace
std::unique_ptr<ports::AuthorizationServices> makeAuthorizationServices() {
  return std::make_unique<AuthorizationServices>();
}
std::unique_ptr<ports::HelperInstaller> makeHelperInstaller() {
  return std::make_unique<HelperInstaller>();
}
std::unique_ptr<ports::Bundle> makeBundle() { return std::make_unique<Bundle>(); }
std::unique_ptr<ports::SystemLog> makeSystemLog() { return std::make_unique<SystemLog>(); }
}  // namespace pallimo::adapters::macos
