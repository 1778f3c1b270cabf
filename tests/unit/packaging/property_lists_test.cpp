// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "adapters/libplist/libplist_reader.h"
#include "base/bytes.h"
#include "helper_link/protocol/xpc_protocol.h"
#include "signing_requirements.h"

namespace pallimo {
namespace {

using base::PropertyList;

const std::string kLabel(helper_link::protocol::kMachServiceName);

base::Bytes bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return base::Bytes(std::istreambuf_iterator<char>(file), {});
}

PropertyList listAt(const std::string& path) {
  const auto list = adapters::libplist::LibplistReader().read(bytesOf(path));
  EXPECT_TRUE(list) << path;
  return list.value_or(PropertyList());
}

PropertyList built(const std::string& name) { return listAt(PALLIMO_PACKAGING_DIR "/" + name); }

/// The value under a path of keys; an empty dictionary when there is none.
PropertyList at(PropertyList list, std::initializer_list<std::string> keys) {
  for (const std::string& key : keys) {
    const PropertyList* found = list.find(key);
    if (found == nullptr) return PropertyList();
    list = PropertyList(*found);
  }
  return list;
}

PropertyList text(std::string_view value) { return PropertyList(std::string(value)); }

TEST(PropertyLists, TheAppLetsNobodyBeItsHelperButWhomItsCodeAccepts) {
  EXPECT_EQ(at(built("AppInfo.plist"), {"SMPrivilegedExecutables", kLabel}),
            text(signing::kHelperRequirement));
  EXPECT_EQ(at(built("AppInfo.plist"), {"SMPrivilegedExecutables"}).dictionary()->size(), 1u);
}

TEST(PropertyLists, TheHelperIsInstalledByNobodyButWhomItsCodeAccepts) {
  EXPECT_EQ(at(built("HelperInfo.plist"), {"SMAuthorizedClients"}),
            PropertyList(base::PropertyListArray{text(signing::kAppRequirement)}));
}

TEST(PropertyLists, EachRequirementNamesTheOthersIdentifierAndAVersion) {
  const PropertyList app = at(built("AppInfo.plist"), {"CFBundleIdentifier"});
  EXPECT_NE(signing::kAppRequirement.find("identifier \"" + *app.text() +
                                          "\" and info "
                                          "[CFBundleShortVersionString] >= \""),
            std::string_view::npos);
  EXPECT_NE(signing::kHelperRequirement.find("identifier \"" + kLabel +
                                             "\" and info "
                                             "[CFBundleShortVersionString] >= \""),
            std::string_view::npos);
}

TEST(PropertyLists, AppAndHelperHaveOneVersion) {
  for (const char* key : {"CFBundleShortVersionString", "CFBundleVersion"}) {
    EXPECT_EQ(at(built("AppInfo.plist"), {key}), text(PALLIMO_VERSION)) << key;
    EXPECT_EQ(at(built("HelperInfo.plist"), {key}), text(PALLIMO_VERSION)) << key;
  }
}

TEST(PropertyLists, TheAppsIdentifierIsTheDomainOfItsSettings) {
  // In lower case, as Qt writes it, made of the two names that the Mac's platform gives it.
  EXPECT_EQ(at(built("AppInfo.plist"), {"CFBundleIdentifier"}), text("com.ostrovane.pallimo"));
}

TEST(PropertyLists, TheJobServesTheNameThatTheAppConnectsTo) {
  EXPECT_EQ(at(built("HelperInfo.plist"), {"CFBundleIdentifier"}), text(kLabel));
  EXPECT_EQ(at(built("HelperJob.plist"), {"Label"}), text(kLabel));
  EXPECT_EQ(at(built("HelperJob.plist"), {"MachServices"}),
            PropertyList(base::PropertyListDictionary{{kLabel, PropertyList(true)}}));
  EXPECT_EQ(
      at(built("HelperJob.plist"), {"ProgramArguments"}),
      PropertyList(base::PropertyListArray{text("/Library/PrivilegedHelperTools/" + kLabel)}));
}

TEST(PropertyLists, TheJobSaysNothingElse) {
  // No start at boot, no socket, no environment, no working folder: launchd starts it on demand.
  EXPECT_EQ(built("HelperJob.plist").dictionary()->size(), 3u);
}

TEST(PropertyLists, TheScriptThatInstallsByHandWritesTheSameJob) {
  const std::string written = testing::TempDir() + "/pallimo_job.plist";
  const std::string command = "bash -c '. \"" PALLIMO_SOURCE_DIR
                              "/packaging/macos/common.sh\"; print_job' >\"" +
                              written + "\"";
  ASSERT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(bytesOf(written), bytesOf(PALLIMO_PACKAGING_DIR "/HelperJob.plist"));
}

TEST(PropertyLists, TheHardenedRuntimeHasNoExceptions) {
  const std::string path = PALLIMO_SOURCE_DIR "/packaging/macos/pallimo.entitlements";
  EXPECT_EQ(listAt(path), PropertyList());
  const base::Bytes bytes = bytesOf(path);
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()).find("<!--"), std::string::npos)
      << "the kernel's own reader of entitlements is not a whole one";
}

TEST(PropertyLists, TheAppStartsOnNoOlderSystemThanItIsBuiltFor) {
  EXPECT_EQ(at(built("AppInfo.plist"), {"LSMinimumSystemVersion"}), text("13.0"));
}

TEST(PropertyLists, TheAppLooksForUpdatesWhenItIsAskedAlone) {
  EXPECT_EQ(at(built("AppInfo.plist"), {"SUEnableAutomaticChecks"}), PropertyList(false));
  EXPECT_EQ(at(built("AppInfo.plist"), {"SUFeedURL"}), text(PALLIMO_UPDATE_FEED));
}

}  // namespace
}  // namespace pallimo
