// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ports/child_processes.h"

namespace pallimo::fakes {

/// Programs that end when the test says so. One thread.
class FakeChildProcesses final : public ports::ChildProcesses {
 public:
  std::unique_ptr<ports::ChildProcess> start(
      const ports::ChildCommand& command,
      std::function<void(ports::ChildOutcome)> finished) override {
    auto run = std::make_shared<Run>(Run{command, std::move(finished)});
    runs_.push_back(run);
    return std::make_unique<Handle>(run);
  }

  /// Programs started so far; those of the present carry the same numbers, from 0.
  std::size_t count() const { return runs_.size(); }
  const ports::ChildCommand& command(std::size_t index) const { return runs_.at(index)->command; }

  /// Neither finished nor ended by its owner.
  bool isRunning(std::size_t index) const { return bool(runs_.at(index)->finished); }
  std::size_t running() const {
    std::size_t count = 0;
    for (const auto& run : runs_) count += run->finished ? 1 : 0;
    return count;
  }

  void finish(std::size_t index, ports::ChildOutcome outcome) {
    const auto finished = std::exchange(runs_.at(index)->finished, nullptr);
    if (finished) finished(std::move(outcome));
  }
  /// The program prints the text and ends well.
  void print(std::size_t index, const std::string& text) {
    finish(index, {ports::ChildOutcome::End::exited, 0, base::Bytes(text.begin(), text.end())});
  }

 private:
  struct Run {
    ports::ChildCommand command;
    std::function<void(ports::ChildOutcome)> finished;
  };

  class Handle final : public ports::ChildProcess {
   public:
    explicit Handle(std::shared_ptr<Run> run) : run_(std::move(run)) {}
    ~Handle() override { run_->finished = nullptr; }

   private:
    const std::shared_ptr<Run> run_;
  };

  std::vector<std::shared_ptr<Run>> runs_;
};

}  // namespace pallimo::fakes
