// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The real stand-in: its own process, a pipe, the real clock at a high speed.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/simulated/simulation_file.h"
#include "unit/adapters/simulated/recordings/recording_folder.h"

namespace pallimo {
namespace {

using adapters::simulated::RecordingFolder;
using adapters::simulated::Simulation;
using Words = std::vector<std::string>;

constexpr int kDeadline = 60'000;  // ms; only a broken program comes near it

/// The stand-in with a pipe at its standard output and one at its standard error.
class Process {
 public:
  Process(Words arguments, Words environment) {
    arguments.insert(arguments.begin(), PALLIMO_BIN_DIR "/powermetrics");
    EXPECT_EQ(pipe2(output_.data(), O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(errors_.data(), O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output_[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors_[1], STDERR_FILENO);
    EXPECT_EQ(posix_spawn(&child_, arguments[0].c_str(), &actions, nullptr,
                          pointers(arguments).data(), pointers(environment).data()),
              0);
    posix_spawn_file_actions_destroy(&actions);
    close(output_[1]);
    close(errors_[1]);
  }
  ~Process() {
    close(errors_[0]);
    if (readsOutput_) close(output_[0]);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  std::string output() const { return readAll(output_[0]); }
  std::string errors() const { return readAll(errors_[0]); }

  void stopReading() {
    close(output_[0]);
    readsOutput_ = false;
  }

  /// The exit status; -1 when a signal ended it.
  int wait() const {
    int status = 0;
    EXPECT_EQ(waitpid(child_, &status, 0), child_);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  static std::vector<char*> pointers(Words& words) {
    std::vector<char*> all;
    for (std::string& word : words) all.push_back(word.data());
    all.push_back(nullptr);
    return all;
  }

  static std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 4096> piece{};
    struct pollfd readable = {.fd = descriptor, .events = POLLIN, .revents = 0};
    while (poll(&readable, 1, kDeadline) > 0) {
      const ssize_t got = read(descriptor, piece.data(), piece.size());
      if (got <= 0) return text;
      text.append(piece.data(), static_cast<std::size_t>(got));
    }
    ADD_FAILURE() << "the process neither wrote nor ended";
    return text;
  }

  std::array<int, 2> output_{};
  std::array<int, 2> errors_{};
  pid_t child_ = 0;
  bool readsOutput_ = true;
};

class PowermetricsProcess : public ::testing::Test {
 protected:
  Words environmentFor(const Simulation& simulation, const std::string& request) const {
    const std::string path = folder_.pathOf("simulation.json");
    EXPECT_EQ(writeSimulation(path, simulation), "");
    return {"PALLIMO_SIMULATION=" + path, "PALLIMO_REQUEST=" + request};
  }
  Words builtin(double speed) const {
    return environmentFor({.machine = "MacBook Pro M2 Pro",
                           .recording = "",
                           .seed = 1,
                           .speed = speed,
                           .startTime = 1'700'000'000},
                          "1");
  }
  static Words arguments(const std::string& period) {
    return {"-n", "1", "-i", period, "-f", "plist", "--samplers", "cpu_power,gpu_power,ane_power"};
  }

  RecordingFolder folder_;
};

TEST_F(PowermetricsProcess, PrintsAPropertyList) {
  const Process process(arguments("1000"), builtin(100));
  const std::string output = process.output();
  EXPECT_EQ(process.errors(), "");
  EXPECT_EQ(process.wait(), 0);
  const base::Bytes bytes(output.begin(), output.end());
  const auto document = adapters::libplist::LibplistReader().read(bytes);
  ASSERT_TRUE(document);
  ASSERT_NE(document->find("processor"), nullptr);
  EXPECT_EQ(document->find("processor")->find("clusters")->array()->size(), 3u);
}

TEST_F(PowermetricsProcess, PrintsTheRecordedBytes) {
  const std::string bytes("a\0b\n", 4);
  folder_.write("1.plist", std::string(200'000, 'x'));
  folder_.write("2.plist", bytes);
  folder_.write("machine.json", R"({"format": 1, "name": "x", "sysctl": {},
      "steps": [{"powermetrics": "1.plist"}, {"powermetrics": "2.plist"}]})");
  const Simulation recording{.machine = "", .recording = folder_.path(), .seed = 1, .speed = 100};
  const Process first(arguments("1000"), environmentFor(recording, "1"));
  EXPECT_EQ(first.output(), std::string(200'000, 'x'));
  EXPECT_EQ(first.wait(), 0);
  const Process second(arguments("1000"), environmentFor(recording, "2"));
  EXPECT_EQ(second.output(), bytes);
  EXPECT_EQ(second.wait(), 0);
}

TEST_F(PowermetricsProcess, EndsWhenItsReaderGoes) {
  // An hour's sample: only the vanished reader can end it within the test's time.
  Process process(arguments("3600000"), builtin(1));
  process.stopReading();
  EXPECT_EQ(process.wait(), 1);
  EXPECT_EQ(process.errors(), "");
}

TEST_F(PowermetricsProcess, NamesAnUnknownSamplerOnStandardError) {
  const Process process({"-n", "1", "-f", "plist", "--samplers", "bandwidth"}, builtin(1));
  EXPECT_EQ(process.output(), "");
  EXPECT_EQ(process.errors(), "powermetrics: unrecognized sampler: bandwidth\n");
  EXPECT_EQ(process.wait(), 1);
}

TEST_F(PowermetricsProcess, SaysHowItIsUsedOnStandardError) {
  const Process process({}, {});
  EXPECT_EQ(process.output(), "");
  EXPECT_EQ(process.errors(),
            "usage: powermetrics -n 1 [-i milliseconds] -f plist --samplers name[,name...]\n");
  EXPECT_EQ(process.wait(), 64);
}

TEST_F(PowermetricsProcess, SaysWhatItIsOnStandardOutput) {
  const Process process({"--help"}, {});
  EXPECT_NE(process.output().find("It measures nothing."), std::string::npos);
  EXPECT_EQ(process.errors(), "");
  EXPECT_EQ(process.wait(), 0);
}

TEST_F(PowermetricsProcess, NeedsItsEnvironment) {
  const Process process(arguments("1000"), {});
  EXPECT_EQ(process.errors(), "powermetrics: PALLIMO_SIMULATION is not set\n");
  EXPECT_EQ(process.wait(), 1);
}

}  // namespace
}  // namespace pallimo
