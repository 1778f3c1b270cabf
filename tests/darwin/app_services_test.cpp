// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "adapters/common/signing_requirement.h"
#include "adapters/macos/c_adapters.h"
#include "darwin/on_a_mac.h"
#include "helper_link/authorization.h"

namespace pallimo::darwin {
namespace {

const std::string kBundle = "/Applications/Pallimo.app";
const std::string kHelper = "Contents/Library/LaunchServices/com.ostrovane.powermetrics";
const std::string kLabel = "com.ostrovane.powermetrics";
const Lines kConsent = {"1 x authorization"};

base::PropertyList versioned(const std::string& version) {
  base::PropertyListDictionary dictionary;
  dictionary.emplace_back("CFBundleShortVersionString", base::PropertyList(version));
  return base::PropertyList(std::move(dictionary));
}

void furnish(TestMac& mac) {
  mac.mac.infoDictionaries[kBundle] = versioned("2.0");
  mac.mac.infoDictionaries[kBundle + "/" + kHelper] = versioned("1.0");
}

std::string versionAt(const std::string& path) {
  const auto dictionary = adapters::macos::makeBundle()->infoDictionary(path);
  return dictionary ? *dictionary->find("CFBundleShortVersionString")->text() : "nothing";
}

class AppServices : public OnAMac {
 protected:
  AppServices() { furnish(*this); }

  const std::unique_ptr<ports::AuthorizationServices> authorization_ =
      adapters::macos::makeAuthorizationServices();
  const std::unique_ptr<ports::HelperInstaller> installer_ = adapters::macos::makeHelperInstaller();
};

TEST_F(AppServices, AnAuthorizationIsCreatedWithoutAnyRight) {
  const auto attempt = authorization_->createAuthorization();
  EXPECT_EQ(attempt.status, 0);
  EXPECT_NE(attempt.token, nullptr);
  EXPECT_EQ(mac.journal, Lines{"AuthorizationCreate"});
  kept_ = kConsent;
}

TEST_F(AppServices, AnAuthorizationOutlivesItsToken) {
  authorization_->createAuthorization().token.reset();
  authorization_->createAuthorization().token.reset();
  kept_ = {"2 x authorization"};
}

TEST_F(AppServices, AnAuthorizationMayFailWithTheSystemsStatus) {
  mac.authorizationStatus = -60008;
  const auto attempt = authorization_->createAuthorization();
  EXPECT_EQ(attempt.status, -60008);
  EXPECT_EQ(attempt.token, nullptr);
}

TEST_F(AppServices, ASuccessWithoutAReferenceGivesNoToken) {
  mac.givesAuthorization = false;
  const auto attempt = authorization_->createAuthorization();
  EXPECT_EQ(attempt.status, 0);
  EXPECT_EQ(attempt.token, nullptr);
}

TEST_F(AppServices, BlessesTheLabelWithTheAuthorization) {
  const auto attempt = authorization_->createAuthorization();
  EXPECT_TRUE(installer_->bless(kLabel, *attempt.token));
  EXPECT_EQ(mac.journal, (Lines{"AuthorizationCreate", "SMJobBless " + kLabel + " consent"}));
  kept_ = kConsent;
}

TEST_F(AppServices, ARefusalIsOneAndLeavesNoErrorBehind) {
  mac.blesses = false;
  const auto attempt = authorization_->createAuthorization();
  EXPECT_FALSE(installer_->bless(kLabel, *attempt.token));
  kept_ = kConsent;
}

TEST_F(AppServices, ARightIsCopiedWithTheCallersFlags) {
  const auto attempt = authorization_->createAuthorization();
  EXPECT_EQ(authorization_->copyRight(*attempt.token, "system.privilege.admin", 19), 0);
  mac.rightStatus = -60006;
  EXPECT_EQ(authorization_->copyRight(*attempt.token, "system.privilege.admin", 19), -60006);
  EXPECT_EQ(mac.journal.back(), "AuthorizationCopyRights consent system.privilege.admin 19");
  kept_ = kConsent;
}

using AppServicesDeathTest = AppServices;

// In a process of its own: once found, the function stays.
TEST_F(AppServicesDeathTest, AToolCannotBeExecutedWhereTheFunctionIsMissing) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto attempt = authorization_->createAuthorization();
  const auto isExecuted = [&] {
    return authorization_->executeWithPrivileges(*attempt.token, "/bin/ls", {}).has_value();
  };
  EXPECT_EXIT(std::exit(isExecuted() ? 1 : 0), testing::ExitedWithCode(0), "");
  kept_ = kConsent;
}

/// A system that has the function still.
class WithExecution : public AppServices {
 protected:
  WithExecution() : library_(dlopen(PALLIMO_EXECUTE_LIBRARY, RTLD_NOW | RTLD_GLOBAL)) {
    seen<OSStatus>("executedStatus") = 0;
    kept_ = kConsent;
  }

  template <typename T>
  T& seen(const char* name) {
    return *static_cast<T*>(dlsym(library_, name));
  }

  void* const library_;
};

TEST_F(WithExecution, AToolIsExecutedWithItsArgumentsAndDefaultOptions) {
  const auto attempt = authorization_->createAuthorization();
  EXPECT_EQ(authorization_->executeWithPrivileges(*attempt.token, "/bin/ls", {"-l", "a b"}), 0);
  EXPECT_STREQ(seen<const char*>("executedTool"), "/bin/ls");
  EXPECT_STREQ(&seen<const char>("executedArguments"), "[-l][a b]");
  EXPECT_NE(seen<void*>("executedFor"), nullptr);
  EXPECT_EQ(seen<unsigned>("executedOptions"), 0u);
  EXPECT_FALSE(seen<bool>("executedWithPipe"));
}

TEST_F(WithExecution, ItsStatusIsHandedOn) {
  seen<OSStatus>("executedStatus") = -60031;
  const auto attempt = authorization_->createAuthorization();
  EXPECT_EQ(authorization_->executeWithPrivileges(*attempt.token, "/bin/ls", {}), -60031);
}

TEST_F(WithExecution, TheWrapperAsksForTheRightAndExecutes) {
  helper_link::Authorization wrapper(*authorization_);
  EXPECT_EQ(wrapper.executeWithPrivileges("/bin/rm -f x"), std::nullopt);
  EXPECT_EQ(mac.journal, (Lines{"AuthorizationCreate",
                                "AuthorizationCopyRights consent system.privilege.admin 19"}));
  EXPECT_STREQ(&seen<const char>("executedArguments"), "[-f][x]");
}

TEST_F(AppServices, TheBundleTellsItsOwnVersionAndTheEmbeddedHelpers) {
  EXPECT_EQ(versionAt(""), "2.0");
  EXPECT_EQ(versionAt(kHelper), "1.0");
}

TEST_F(AppServices, WhatCarriesNoInfoDictionaryHasNone) {
  mac.infoDictionaries.clear();
  EXPECT_EQ(versionAt(""), "nothing");
  EXPECT_EQ(versionAt(kHelper), "nothing");
}

TEST_F(AppServices, APathThatIsNoTextHasNoInfoDictionary) {
  EXPECT_EQ(versionAt("\xff"), "nothing");
}

TEST_F(AppServices, TheLogGetsTheLineAsOnePublicText) {
  adapters::macos::makeSystemLog()->write("[XPCTEST] 100 %s");
  adapters::macos::makeSystemLog()->write(std::string_view("and more", 3));
  EXPECT_EQ(mac.journal, (Lines{"log [XPCTEST] 100 %s", "log and"}));
}

TEST_F(AppServices, ARequirementThatTheSystemCannotReadIsNone) {
  EXPECT_TRUE(adapters::common::isSigningRequirement("anchor apple generic"));
  EXPECT_FALSE(adapters::common::isSigningRequirement("nonsense ("));
  EXPECT_FALSE(adapters::common::isSigningRequirement("anchor \xff"));
}

TEST(AppServicesFailures, OfTheBundleGiveNothing) {
  const auto read = [] { return versionAt(kHelper); };
  EXPECT_EQ(
      outcomesOfEachFailure(furnish, read),
      (Lines{"no failure: 1.0", "CFBundleGetMainBundle: nothing", "CFBundleCopyBundleURL: nothing",
             "CFStringCreateWithBytes: nothing", "CFURLCreateCopyAppendingPathComponent: nothing",
             "CFBundleCopyInfoDictionaryForURL: nothing"}));
}

TEST(AppServicesFailures, OfTheInstallationAreARefusal) {
  const auto install = [] {
    const auto authorization = adapters::macos::makeAuthorizationServices();
    const auto attempt = authorization->createAuthorization();
    if (!attempt.token) return "status " + std::to_string(attempt.status);
    if (authorization->copyRight(*attempt.token, "x", 0) != 0) return std::string("no right");
    const bool isBlessed = adapters::macos::makeHelperInstaller()->bless(kLabel, *attempt.token);
    return std::string(isBlessed ? "blessed" : "refused");
  };
  EXPECT_EQ(outcomesOfEachFailure(furnish, install, {"authorization"}),
            (Lines{"no failure: blessed", "AuthorizationCreate: status -60008",
                   "AuthorizationCopyRights: no right", "CFStringCreateWithBytes: refused",
                   "SMJobBless: refused"}));
}

TEST(AppServicesFailures, OfTheRequirementMakeItNone) {
  const auto check = [] {
    const bool is = adapters::common::isSigningRequirement("anchor apple");
    return std::string(is ? "a requirement" : "none");
  };
  const Lines outcomes = outcomesOfEachFailure(furnish, check);
  ASSERT_EQ(outcomes.size(), 3u);
  EXPECT_EQ(outcomes[0], "no failure: a requirement");
  EXPECT_TRUE(outcomes[1].ends_with(": none"));
  EXPECT_EQ(outcomes[2], "SecRequirementCreateWithString: none");
}

}  // namespace
}  // namespace pallimo::darwin
