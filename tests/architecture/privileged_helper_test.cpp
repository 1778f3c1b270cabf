// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
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

/// What else of the sources the Mac's helper is made of, but for the files whose affair the words
/// are.
std::vector<SourceFile> sharedWithTheHelper(const std::vector<std::string>& but) {
  std::vector<SourceFile> files = sourcesBelow("src/adapters/common");
  files.erase(std::remove_if(files.begin(), files.end(),
                             [&but](const auto& file) {
                               return std::any_of(
                                   but.begin(), but.end(), [&file](const auto& name) {
                                     return startsWith(file.path, "src/adapters/common/" + name);
                                   });
                             }),
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
  // A requirement that is refused, by an exception, leaves the connection unstarted, which ends it.
  EXPECT_EQ(text.find("[connection_ setCodeSigningRequirement:requirement_];\n"
                      "      [connection_ resume];\n      return true;\n"
                      "    } @catch (...) {\n      return false;\n"),
            checked);
  EXPECT_NE(text.find("close(life_.endResuming(start()))"), std::string::npos);
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
  const std::vector<std::string> words = {"ofstream", "fopen", "open(",   "mkdir",     "rename(",
                                          "chmod",    "chown", "symlink", "filesystem"};
  expectWordsNowhere(helperOfAMac(), words);
  // One file opens the null device for a child; Linux's own files are not on a Mac.
  expectWordsNowhere(sharedWithTheHelper({"linux/", "posix_process.cpp"}), words);
}

TEST(PrivilegedHelper, UsesNoShellAndReadsNothingFromItsEnvironment) {
  const std::vector<std::string> words = {"system(", "popen", "/bin/sh", "getenv", "environ;"};
  expectWordsNowhere(helperOfAMac(), words);
  expectWordsNowhere(sharedWithTheHelper({"linux/"}), words);
}

TEST(PrivilegedHelper, UnderstandsFiveMessagesAndSendsOne) {
  const std::string text = readText(root() / kMessages);
  std::vector<std::string> declared;
  for (const std::string& line : splitLines(text)) {
    if (startsWith(line, "@protocol") || startsWith(line, "- ")) declared.push_back(line);
  }
  const std::vector<std::string> expected = {
      "@protocol XPCProtocol",
      "- (void)isRespondingWithCompletion:(void (^)(BOOL isResponding))completion;",
      "- (void)unInstallHelper;",
      "- (void)getVersionWithCompletion:(void (^)(NSString* version))completion;",
      "- (void)requestPowermetricsWithMsSampling:(double)msSampling includeGPU:(BOOL)includeGPU;",
      "- (void)closeHelper;",
      "@protocol ClientProtocol",
      "- (void)powermetricsResult:(nullable NSData*)document;"};
  EXPECT_EQ(declared, expected) << "programs of other versions know these by name";
  // None of them carries a path, a list of words or an object of its sender's choice.
  EXPECT_EQ(countOf(text, ":(NSString*)") + countOf(text, ":(NSArray") + countOf(text, ":(id"), 0u);
}

TEST(PrivilegedHelper, IsSentTheMessagesThatTheProtocolsPageNames) {
  const std::string page = readText(root() / "docs/helper-protocol.md");
  std::size_t at = 0;  // they stand there in the same order
  for (const char* selector :
       {"| `isRespondingWithCompletion:` (block taking `BOOL`)", "`unInstallHelper`",
        "`getVersionWithCompletion:` (block taking `NSString *`)",
        "`requestPowermetricsWithMsSampling:includeGPU:` (`double`, `BOOL`)", "`closeHelper` |",
        "`powermetricsResult:` (`NSData *`, nil when absent)"}) {
    at = page.find(selector, at);
    ASSERT_NE(at, std::string::npos) << selector;
  }
}

TEST(PrivilegedHelper, IsSignedWithTheHardenedRuntimeWhenItIsSignedForOthers) {
  const std::string text = readText(root() / "packaging/macos/sign");
  EXPECT_NE(text.find("codesign --force --sign \"$identity\" --options runtime --timestamp"),
            std::string::npos);
}

TEST(PrivilegedHelper, InstalledByHandIsCheckedWhereNobodyElseCanChangeIt) {
  const std::string text = readText(root() / "packaging/macos/install-helper");
  const std::size_t copied = text.find("install -o root -g wheel -m 0500 \"$helper\"");
  const std::size_t checked =
      text.find("codesign --verify --strict -R=\"$requirement\" \"$installed_tool.new\"");
  const std::size_t placed = text.find("mv -f \"$installed_tool.new\" \"$installed_tool\"");
  ASSERT_NE(placed, std::string::npos);
  EXPECT_LT(copied, checked);
  EXPECT_LT(checked, placed);
}

TEST(PrivilegedHelper, IsInstalledUnderANameThatNoBundleChooses) {
  const std::string text = readText(root() / "packaging/macos/common.sh");
  EXPECT_NE(text.find("\nlabel=com.ostrovane.powermetrics\n"), std::string::npos);
  EXPECT_EQ(countOf(text, "label="), 1u);
}

/// Every `...` of the text, and where each ends.
std::vector<std::string> quotesOf(const std::string& text) {
  std::vector<std::string> quotes;
  std::size_t at = text.find('`');
  while (at != std::string::npos) {
    const std::size_t end = text.find('`', at + 1);
    if (end == std::string::npos) break;
    quotes.push_back(text.substr(at + 1, end - at - 1));
    at = text.find('`', end + 1);
  }
  return quotes;
}

TEST(PrivilegedHelper, HasEachLineThatItsReadmeQuotes) {
  // In a row of the nine ways whatever is quoted before a file, and is code, stands in that file.
  const std::string readme = readText(root() / "helper/README.md");
  const std::size_t begin = readme.find("## How such helpers have been attacked");
  const std::size_t end = readme.find("\n## ", begin);
  std::size_t found = 0;
  for (const std::string& line : splitLines(readme.substr(begin, end - begin))) {
    if (!startsWith(line, "| ")) continue;
    std::vector<std::string> pending;
    for (const std::string& quote : quotesOf(line)) {
      const bool isFile =
          quote.find(' ') == std::string::npos && std::filesystem::is_regular_file(root() / quote);
      if (!isFile) {
        if (quote.find_first_of(" =") != std::string::npos) pending.push_back(quote);
        continue;
      }
      const std::string text = readText(root() / quote);
      for (const std::string& code : pending) {
        EXPECT_NE(text.find(code), std::string::npos) << quote << " has no " << code;
        ++found;
      }
      pending.clear();
    }
  }
  EXPECT_GE(found, 8u);
}

}  // namespace
}  // namespace pallimo::architecture
