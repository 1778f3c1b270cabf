// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "end_to_end/app_process.h"
#include "scenarios/sample_document.h"

namespace pallimo::end_to_end {

namespace fs = std::filesystem;
using scenarios::SampleDocument;

/// Real programs in a folder of their own under /tmp; when a test ends, no process of it is left.
class AppTest : public testing::Test {
 protected:
  using Texts = AppProcess::Texts;

  AppTest() {
    char pattern[] = "/tmp/pallimo-XXXXXX";
    root_ = mkdtemp(pattern);
  }
  ~AppTest() override {
    for (const WatchedProcess& helper : processesOf(root_)) {
      helper.send(SIGKILL);
      EXPECT_TRUE(helper.isGoneInTime());
    }
    fs::remove_all(root_);
  }

  fs::path stateFolder(const std::string& state = "state") const { return root_ / state; }
  fs::path helperPath(const std::string& state = "state") const {
    return stateFolder(state) / "PrivilegedHelperTools/com.ostrovane.powermetrics";
  }
  std::vector<WatchedProcess> helpersOf(const std::string& state = "state") const {
    return processesOf(helperPath(state));
  }

  /// The helper that the app embeds; what a test installs is always a copy.
  static fs::path embeddedHelper() {
    return PALLIMO_BIN_DIR "/Contents/Library/LaunchServices/com.ostrovane.powermetrics";
  }
  /// Puts the embedded helper where an installation would have left it.
  void installHelper(const std::string& state = "state") const { install(embeddedHelper(), state); }
  /// Installs a helper of another version than the app's.
  void installOlderHelper(const std::string& state = "state") const {
    install(PALLIMO_BIN_DIR "/../tests/older/com.ostrovane.powermetrics", state);
  }
  /// Installs a helper of the app's own version whose powermetrics is gone.
  void installStrandedHelper(const std::string& state = "state") const {
    install(PALLIMO_BIN_DIR "/../tests/stranded/com.ostrovane.powermetrics", state);
  }
  /// What goes wrong in the next run: the members of an object, as JSON. The app keeps them.
  void planFaults(const std::string& members, const std::string& state = "state") const {
    makeStateFolder(state);
    std::ofstream(stateFolder(state) / "simulation.json")
        << R"({"format": 1, "machine": "MacBook Pro M2 Pro", "faults": {)" << members << "}}";
  }
  void makeStateFolder(const std::string& state = "state") const {
    fs::create_directories(stateFolder(state));
    fs::permissions(stateFolder(state), fs::perms::owner_all);
  }

  /// What the state folder holds, folders and what lies in them included, in alphabetical order.
  Texts stateEntries(const std::string& state = "state") const {
    std::set<std::string> entries;
    for (const auto& entry : fs::recursive_directory_iterator(stateFolder(state))) {
      entries.insert(entry.path().lexically_relative(stateFolder(state)));
    }
    return {entries.begin(), entries.end()};
  }
  /// After a run: helper and runs have ended, and beside the installed helper only what stays lies
  /// in the state folder.
  void expectNothingLeft(const std::string& state = "state") const {
    for (const WatchedProcess& helper : helpersOf(state)) EXPECT_TRUE(helper.isGoneInTime());
    for (const WatchedProcess& run : runsOf(state)) EXPECT_TRUE(run.isGoneInTime());
    const std::set<std::string> mayStay = {"PrivilegedHelperTools",
                                           "PrivilegedHelperTools/com.ostrovane.powermetrics",
                                           "helper.lock", "settings.ini", "simulation.json"};
    for (const std::string& entry : stateEntries(state)) {
      EXPECT_EQ(mayStay.count(entry), 1u) << entry;
    }
  }
  /// The runs of powermetrics that a helper of this state folder has started.
  std::vector<WatchedProcess> runsOf(const std::string& state = "state") const {
    const std::string wanted =
        "PALLIMO_SIMULATION=" + (stateFolder(state) / "simulation.json").string();
    std::vector<WatchedProcess> found;
    for (const pid_t number : processNumbers()) {
      const std::string text = textOf("/proc/" + std::to_string(number) + "/environ");
      if (text.find(wanted) != std::string::npos) found.emplace_back(number);
    }
    return found;
  }

  /// Starts the app without a window in a state folder of the test.
  std::unique_ptr<AppProcess> startHeadless(Texts arguments, const std::string& state = "state",
                                            const Texts& environment = {}) const {
    arguments.insert(arguments.begin(), {"--headless", "--state-dir", stateFolder(state)});
    return std::make_unique<AppProcess>(arguments, root_ / (state + ".err"), environment);
  }
  /// The same under conditions that the system sets.
  std::unique_ptr<AppProcess> startHeadlessUnder(const AppProcess::Conditions& conditions,
                                                 Texts arguments) const {
    arguments.insert(arguments.begin(), {"--headless", "--state-dir", stateFolder()});
    return std::make_unique<AppProcess>(arguments, root_ / "state.err", Texts(), std::nullopt,
                                        conditions);
  }
  /// Starts the app with exactly these arguments.
  std::unique_ptr<AppProcess> start(const Texts& arguments, const Texts& environment = {}) const {
    return std::make_unique<AppProcess>(arguments, root_ / "err", environment);
  }

  /// Writes a recording of a Mac with Apple silicon (or another processor) whose steps print these
  /// documents, or nothing where one is absent, and whose sensors can't be read. Returns its
  /// folder.
  std::string recording(const std::vector<std::optional<SampleDocument>>& steps,
                        long cpuType = 0x0100000C, const std::string& name = "recording") const {
    const fs::path folder = root_ / name;
    fs::create_directory(folder);
    std::ostringstream json;
    json << R"({"format": 1, "name": "Test Mac", "sysctl": {"hw.cputype": )" << cpuType
         << R"(, "hw.model": "Mac14,2", "machdep.cpu.brand_string": "Apple M2"}, "steps": [)";
    for (std::size_t step = 0; step < steps.size(); ++step) {
      if (step > 0) json << ", ";
      if (!steps[step]) {
        json << R"({"powermetrics": null})";
        continue;
      }
      const std::string file = std::to_string(step + 1) + ".plist";
      std::ofstream(folder / file) << scenarios::xmlOf(*steps[step]);
      json << R"({"powermetrics": ")" << file << R"("})";
    }
    json << "]}";
    std::ofstream(folder / "machine.json") << json.str();
    return folder;
  }

  /// A sample whose package draws this many milliwatts.
  static SampleDocument drawing(int milliwatts) {
    SampleDocument sample;
    sample.combinedPower = milliwatts;
    return sample;
  }

  /// The columns of a line of the log.
  static Texts columnsOf(const std::string& line) {
    Texts columns;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = line.find(", ", begin)) != std::string::npos;
         begin = end + 2) {
      columns.push_back(line.substr(begin, end - begin));
    }
    columns.push_back(line.substr(begin));
    return columns;
  }
  /// Everything but the times.
  static std::string figuresOf(const std::string& line) {
    const std::size_t afterClock = line.find(", ");
    return line.substr(line.find(", ", afterClock + 2) + 2);
  }

  fs::path root_;

 private:
  void install(const fs::path& program, const std::string& state) const {
    makeStateFolder(state);
    fs::create_directories(helperPath(state).parent_path());
    fs::permissions(helperPath(state).parent_path(), fs::perms::owner_all);
    fs::copy_file(program, helperPath(state), fs::copy_options::overwrite_existing);
    fs::permissions(helperPath(state), fs::perms(0755));
  }
};

/// The same with a helper that is installed already.
class AppWithHelperTest : public AppTest {
 protected:
  AppWithHelperTest() { installHelper(); }
};

}  // namespace pallimo::end_to_end
