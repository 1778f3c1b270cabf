// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/mutex.h"
#include "ports/console.h"
#include "ports/system_log.h"

namespace pallimo::fakes {

/// Remembers lines; any thread.
class Lines {
 public:
  void add(std::string_view line) {
    base::MutexLock lock(mutex_);
    lines_.emplace_back(line);
  }
  std::vector<std::string> all() const {
    base::MutexLock lock(mutex_);
    return lines_;
  }
  void forget() {
    base::MutexLock lock(mutex_);
    std::vector<std::string>().swap(lines_);
  }

 private:
  mutable base::Mutex mutex_;
  std::vector<std::string> lines_ PALLIMO_GUARDED_BY(mutex_);
};

class RecordingConsole final : public ports::Console {
 public:
  void writeLine(std::string_view line) override { lines_.add(line); }
  std::vector<std::string> lines() const { return lines_.all(); }
  void forget() { lines_.forget(); }

 private:
  Lines lines_;
};

class RecordingSystemLog final : public ports::SystemLog {
 public:
  void write(std::string_view line) override { lines_.add(line); }
  std::vector<std::string> lines() const { return lines_.all(); }

 private:
  Lines lines_;
};

}  // namespace pallimo::fakes
