// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>
#include <locale.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <clocale>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

extern char** environ;

namespace pallimo::tests {

/// Puts the process into a locale whose decimal point is a comma, as a toolkit does at start for a
/// German user, and back again. Takes an installed one, or compiles one beside the test programs
/// with `localedef`. Throws when neither can be had: these tests must not pass unseen.
class CommaLocale {
 public:
  CommaLocale() {
    if (enterInstalled() || enterCompiled()) return;
    throw std::runtime_error(
        "no locale with a decimal comma is installed and none can be compiled: install the package "
        "that brings localedef and its sources (Debian: locales)");
  }
  ~CommaLocale() { std::setlocale(LC_ALL, "C"); }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

 private:
  static constexpr const char* kName = "de_DE.UTF-8";

  static bool enter(const char* name) {
    return std::setlocale(LC_ALL, name) != nullptr && *localeconv()->decimal_point == ',';
  }

  static bool enterInstalled() {
    constexpr std::array<const char*, 8> kNames = {kName,         "de_DE.utf8", "de_AT.UTF-8",
                                                   "fr_FR.UTF-8", "fr_FR.utf8", "es_ES.UTF-8",
                                                   "it_IT.UTF-8", "nl_NL.UTF-8"};
    for (const char* name : kNames) {
      if (enter(name)) return true;
    }
    return false;
  }

  static bool enterCompiled() {
    const std::filesystem::path folder = PALLIMO_BIN_DIR "/../tests/locales";
    if (!std::filesystem::exists(folder / kName) && !compileInto(folder)) return false;
    setenv("LOCPATH", folder.c_str(), 1);
    return enter(kName);
  }

  /// Several test programs may do this at once: each compiles its own, the first one's stays.
  static bool compileInto(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    std::string own = (folder / "new-XXXXXX").string();
    if (mkdtemp(own.data()) == nullptr) return false;
    const std::string made = own + "/" + kName;
    if (run({"localedef", "-i", "de_DE", "-f", "UTF-8", made})) {
      std::filesystem::rename(made, folder / kName, error);
    }
    std::filesystem::remove_all(own, error);
    return std::filesystem::exists(folder / kName);
  }

  static bool run(std::vector<std::string> command) {
    std::vector<char*> arguments;
    for (std::string& word : command) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) {
      return false;
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
};

enum class UserLocale { c, comma };

/// Whose tests run twice: under the "C" locale and under one that writes a decimal comma.
/// INSTANTIATE_TEST_SUITE_P(Locales, Suite, kUserLocales, localeName).
class UnderEachLocale : public testing::TestWithParam<UserLocale> {
 protected:
  void SetUp() override {
    if (GetParam() == UserLocale::comma) comma_.emplace();
  }

 private:
  std::optional<CommaLocale> comma_;
};

inline const auto kUserLocales = testing::Values(UserLocale::c, UserLocale::comma);

inline std::string localeName(const testing::TestParamInfo<UserLocale>& parameter) {
  return parameter.param == UserLocale::c ? "C" : "Comma";
}

}  // namespace pallimo::tests
