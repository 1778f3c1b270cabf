// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The fake of a function that is looked up by its name. A library of its own, so that a test can
// let it be there or not.

#include <Security/Authorization.h>

#include <cstdio>

extern "C" {

// What the last call was given, for the test to look up.
const char* executedTool = nullptr;
char executedArguments[256] = "";
AuthorizationRef executedFor = nullptr;
unsigned executedOptions = 99;
bool executedWithPipe = true;
OSStatus executedStatus = 0;

OSStatus AuthorizationExecuteWithPrivileges(AuthorizationRef authorization, const char* tool,
                                            AuthorizationFlags options, char* const* arguments,
                                            FILE** pipe);
OSStatus AuthorizationExecuteWithPrivileges(AuthorizationRef authorization, const char* tool,
                                            AuthorizationFlags options, char* const* arguments,
                                            FILE** pipe) {
  executedFor = authorization;
  static char path[64];
  std::snprintf(path, sizeof path, "%s", tool);
  executedTool = path;
  executedOptions = options;
  executedWithPipe = pipe != nullptr;
  std::size_t written = 0;
  executedArguments[0] = '\0';
  for (; *arguments != nullptr; ++arguments) {
    written += static_cast<std::size_t>(std::snprintf(
        executedArguments + written, sizeof executedArguments - written, "[%s]", *arguments));
  }
  return executedStatus;
}

}  // extern "C"
