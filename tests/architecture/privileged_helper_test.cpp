// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "architecture/source_tree.h"

// What can be read off the sources of a program that runs as root and can't be run here.

namespace pallimo::architecture {
namespace {

constexpr const char* kListener = "helper/macos/xpc_listener.mm";
constexpr const char* kConnector = "src/adapters/macos/xpc_helper_connector.mm";
constexpr const char* kMessages = "src/helper_link/protocol/xpc_messages.h";

std::size_t countOf(const std::string& text, const std::string& word) {
  std::size_t count = 0;
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    ++count;
  }
  return count;
}

/// The helper as it is on a Mac.
std::vector<SourceFile> helperOfAMac() {
  std::vector<SourceFile> files = sourcesBelow("helper");
  files.erase(
      std::remove_if(files.begin(), files.end(),
                     [](const auto& file) { return startsWith(file.path, "helper/linux/"); }),
      files.end());
  return files;
}

void expectWordsNowhere(const std::vector<SourceFile>& files,
                        const std::vector<std::string>& words) {
  ASSERT_FALSE(files.empty());
  for (const SourceFile& file : files) {
    for (const std::string& line : file.lines) {
      for (const std::string& word : words) {
        EXPECT_EQ(line.find(word), std::string::npos) << file.path << ": " << line;
      }
    }
  }
}

TEST(PrivilegedHelper, ChecksAClientsSignatureBeforeTheClientCanSayAnything) {
  const std::string text = readText(root() / kListener);
  const std::size_t checked = text.find("[connection setCodeSigningRequirement:requirement_];");
  const std::size_t resumed = text.find("[connection resume];");
  ASSERT_NE(checked, std::string::npos);
  EXPECT_LT(checked, resumed);
  EXPECT_EQ(countOf(text, "[connection resume]"), 1u) << "one door, and it is watched";
}

TEST(PrivilegedHelper, ServesNobodyWithARequirementThatCanNotBeRead) {
  const std::string text = readText(root() / kListener);
  EXPECT_LT(text.find("if (!isRequirementValid_) return false;"), text.find("[listener_ resume];"));
}

TEST(PrivilegedHelper, IsCheckedByTheAppAfterTheHandlersAreSetAndBeforeTheConnectionResumes) {
  const std::string text = readText(root() / kConnector);
  const std::size_t checked = text.find("[connection_ setCodeSigningRequirement:requirement_];");
  ASSERT_NE(checked, std::string::npos);
  EXPECT_EQ(text.find("[connection_ resume];", checked) - checked,
            std::string("[connection_ setCodeSigningRequirement:requirement_];\n    ").size());
  EXPECT_EQ(countOf(text, "[connection_ resume]"), 1u);
  EXPECT_LT(text.find("if (!common::isSigningRequirement(requirement_)) return nullptr;"),
            text.find("initWithMachServiceName"));
}

TEST(PrivilegedHelper, NeverAsksWhoAClientIsByItsProcessNumber) {
  // A number may belong to another process a moment later.
  std::vector<SourceFile> files = helperOfAMac();
  for (SourceFile& file : sourcesBelow("src/adapters/macos")) files.push_back(std::move(file));
  expectWordsNowhere(files, {"processIdentifier", "effectiveUserIdentifier", "auditToken", "getpid",
                             "SecCodeCopyGuestWithAttributes", "kSecGuestAttributePid"});
}

TEST(PrivilegedHelper, WritesNoFileAndMakesNone) {
  expectWordsNowhere(helperOfAMac(), {"ofstream", "fopen", "open(", "mkdir", "rename(", "chmod",
                                      "chown", "symlink", "filesystem"});
}

TEST(PrivilegedHelper, UsesNoShellAndReadsNothingFromItsEnvironment) {
  expectWordsNowhere(helperOfAMac(), {"system(", "popen", "/bin/sh", "getenv", "environ;"});
}

TEST(PrivilegedHelper, UnderstandsFiveMessagesAndSendsOne) {
  const std::string text = readText(root() / kMessages);
  EXPECT_EQ(countOf(text, "- (void)"), 6u);
  EXPECT_EQ(countOf(text, "@protocol"), 2u);
  // None of them carries a path, a list of words or an object of its sender's choice.
  EXPECT_EQ(countOf(text, ":(NSString*)") + countOf(text, ":(NSArray") + countOf(text, ":(id"), 0u);
}

TEST(PrivilegedHelper, IsSignedWithTheHardenedRuntimeWhenItIsSignedForOthers) {
  const std::string text = readText(root() / "packaging/macos/sign");
  EXPECT_NE(text.find("codesign --force --sign \"$identity\" --options runtime --timestamp"),
            std::string::npos);
}

TEST(PrivilegedHelper, InstalledByHandIsCheckedWhereNobodyElseCanChangeIt) {
  const std::string text = readText(root() / "packaging/macos/install-helper");
  const std::size_t copied = text.find("install -o root -g wheel -m 0544 \"$helper\"");
  const std::size_t checked =
      text.find("codesign --verify --strict -R=\"$requirement\" \"$installed_tool.new\"");
  const std::size_t placed = text.find("mv -f \"$installed_tool.new\" \"$installed_tool\"");
  ASSERT_NE(placed, std::string::npos);
  EXPECT_LT(copied, checked);
  EXPECT_LT(checked, placed);
}

}  // namespace
}  // namespace pallimo::architecture
