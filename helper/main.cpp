// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <unistd.h>

#include "helper/command_line.h"
#include "helper/make_helper_platform.h"
#include "helper/run_helper.h"

namespace pallimo::helper {
namespace {

/// A terminal or a file takes these few lines at once; whatever does not gets what it took.
int tell(const Answer& answer) {
  const int descriptor = answer.status == exit_status::kServed ? STDOUT_FILENO : STDERR_FILENO;
  const ssize_t written = write(descriptor, answer.text.data(), answer.text.size());
  return written < 0 ? exit_status::kNotPrepared : answer.status;
}

int main(int argumentCount, char* arguments[]) {
  // A program may be started without even a name.
  const std::vector<std::string_view> given(arguments + (argumentCount > 0 ? 1 : 0),
                                            arguments + argumentCount);
  if (const auto answer = answerTo(given, PALLIMO_VERSION)) return tell(*answer);
  const auto platform = makeHelperPlatform({PALLIMO_VERSION, PALLIMO_POWERMETRICS});
  return platform ? runHelper(*platform) : exit_status::kNotPrepared;
}

}  // namespace
}  // namespace pallimo::helper

int main(int argumentCount, char* arguments[]) {
  return pallimo::helper::main(argumentCount, arguments);
}
