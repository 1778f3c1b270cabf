// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/posix_program_launcher.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>

namespace pallimo::adapters::common {
namespace {

using Arguments = std::vector<std::string>;

std::optional<std::string> outputOf(const std::string& path, const Arguments& arguments) {
  PosixProgramLauncher launcher;
  const auto bytes = launcher.run(path, arguments);
  if (!bytes) return std::nullopt;
  return std::string(bytes->begin(), bytes->end());
}

TEST(PosixProgramLauncher, ReadsWhatTheProgramPrints) {
  EXPECT_EQ(outputOf("/bin/echo", {"-n", "a b", "c"}), "a b c");
}

TEST(PosixProgramLauncher, ReadsOutputThatFillsThePipeManyTimes) {
  const auto output = outputOf("/bin/sh", {"-c", "head -c 1000000 /dev/zero; echo end"});
  ASSERT_TRUE(output);
  EXPECT_EQ(output->size(), 1000004u);
  EXPECT_EQ(output->substr(1000000), "end\n");
}

TEST(PosixProgramLauncher, DoesNotMindTheExitStatus) {
  EXPECT_EQ(outputOf("/bin/sh", {"-c", "echo some; exit 3"}), "some\n");
}

TEST(PosixProgramLauncher, GivesNothingForAProgramThatIsNotThere) {
  EXPECT_EQ(outputOf("/nowhere/at/all", {}), std::nullopt);
}

TEST(PosixProgramLauncher, GivesTheProgramNoInputAndNoEnvironmentButThePath) {
  EXPECT_EQ(outputOf("/bin/sh", {"-c", "cat; echo ${HOME:-none}"}), "none\n");
  EXPECT_EQ(outputOf("/usr/bin/env", {}), "PATH=/usr/bin:/bin:/usr/sbin:/sbin\n");
}

TEST(PosixProgramLauncher, DoesNotWaitForAProgramThatHasClosedItsOutput) {
  // Without an end of its own: only a signal ends it.
  PosixProgramLauncher launcher;
  const auto number =
      launcher.run("/bin/sh", {"-c", "echo $$; exec >&-; while :; do sleep 1; done"});
  ASSERT_TRUE(number);
  const int child = std::stoi(std::string(number->begin(), number->end()));
  ASSERT_EQ(kill(-child, SIGKILL), 0);
  siginfo_t ended = {};
  ASSERT_EQ(waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
  launcher.run("/bin/echo", {});
  EXPECT_EQ(waitpid(child, nullptr, WNOHANG), -1) << "the next run reaps it";
  EXPECT_EQ(errno, ECHILD);
}

}  // namespace
}  // namespace pallimo::adapters::common
