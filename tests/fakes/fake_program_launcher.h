// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/mutex.h"
#include "fakes/journal.h"
#include "ports/program_launcher.h"

namespace pallimo::fakes {

/// Programs that print what the test says; all others can't be started. Any thread.
///
/// A command is the path and the arguments with a space between them; a space inside one of them is
/// written "\ ", so that two arguments never look like one.
class FakeProgramLauncher final : public ports::ProgramLauncher {
 public:
  void setOutput(const std::string& command, std::string_view output) {
    base::MutexLock lock(mutex_);
    outputs_[command] = base::Bytes(output.begin(), output.end());
  }
  /// The commands that were run since the last call.
  std::vector<std::string> takeCommands() { return commands_.take(); }

  std::optional<base::Bytes> run(const std::string& path,
                                 const std::vector<std::string>& arguments) override {
    std::string command = escaped(path);
    for (const std::string& argument : arguments) command += " " + escaped(argument);
    commands_.add(command);
    base::MutexLock lock(mutex_);
    const auto found = outputs_.find(command);
    if (found == outputs_.end()) return std::nullopt;
    return found->second;
  }

 private:
  static std::string escaped(std::string_view word) {
    std::string text;
    for (const char character : word) {
      if (character == ' ' || character == '\\') text += '\\';
      text += character;
    }
    return text;
  }

  base::Mutex mutex_;
  std::map<std::string, base::Bytes> outputs_ PALLIMO_GUARDED_BY(mutex_);
  Journal commands_;
};

}  // namespace pallimo::fakes
