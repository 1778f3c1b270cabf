// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "adapters/common/posix_process.h"
#include "adapters/linux/installation/helper_launcher.h"
#include "adapters/linux/installation/state_folder.h"
#include "adapters/linux/link/dbus_helper_connection.h"
#include "adapters/simulated/simulation_file.h"
#include "base/serial_thread.h"
#include "end_to_end/helper_client.h"

namespace pallimo::end_to_end {

namespace fs = std::filesystem;
using adapters::common::Descriptor;
using adapters::linux::StateFolder;

inline constexpr double kHour = 3'600'000;  // milliseconds

// A sanitizer takes its time, and keeps what was freed for a while.
inline constexpr bool kIsSanitized = PALLIMO_IS_SANITIZED;

/// What the build embeds into the app.
inline constexpr const char* kEmbeddedHelper =
    PALLIMO_BIN_DIR "/Contents/Library/LaunchServices/com.ostrovane.powermetrics";

/// The same helper with another version.
inline constexpr const char* kOlderHelper =
    PALLIMO_BIN_DIR "/../tests/older/com.ostrovane.powermetrics";

/// At once: a program of megabytes, read letter by letter, would take seconds.
inline std::string contents(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

/// A file of /proc that is empty for a moment while its process becomes another program.
inline std::string contentsOnceThere(const fs::path& path) {
  const auto deadline = std::chrono::steady_clock::now() + kDeadline;
  std::string text = contents(path);
  while (text.empty() && std::chrono::steady_clock::now() < deadline) text = contents(path);
  return text;
}

/// A process that is not ours to wait for.
class Process {
 public:
  explicit Process(pid_t number)
      : number_(number), exit_(static_cast<int>(syscall(SYS_pidfd_open, number, 0))) {
    EXPECT_TRUE(exit_) << "no process " << number;
  }

  pid_t number() const { return number_; }
  fs::path folder() const { return "/proc/" + std::to_string(number_); }
  void send(int signal) const { EXPECT_EQ(kill(number_, signal), 0); }

  bool endsWithin(std::chrono::milliseconds limit) const {
    pollfd ended = {exit_.get(), POLLIN, 0};
    return poll(&ended, 1, static_cast<int>(limit.count())) == 1;
  }
  bool ends() const { return endsWithin(kDeadline); }

  /// The processes that it has started and that run.
  std::vector<pid_t> children() const {
    std::vector<pid_t> found;
    for (const auto& entry : fs::directory_iterator("/proc")) {
      const std::string name = entry.path().filename();
      if (name.find_first_not_of("0123456789") != std::string::npos) continue;
      const std::string line = contents(entry.path() / "stat");
      const auto fields = line.rfind(") ");
      if (fields == std::string::npos || line[fields + 2] == 'Z') continue;
      if (std::stol(line.substr(fields + 4)) == number_) found.push_back(std::stoi(name));
    }
    return found;
  }

  long number(const std::string& statusField) const {
    const std::string text = contents(folder() / "status");
    const auto at = text.find("\n" + statusField + ":");
    return at == std::string::npos ? -1 : std::stol(text.substr(at + statusField.size() + 2));
  }

 private:
  pid_t number_;
  Descriptor exit_;
};

/// Adopts the helpers and the runs that have lost their parent, and waits for those that have
/// ended: not every machine's first process does.
class Orphans {
 public:
  Orphans() { EXPECT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0); }
  ~Orphans() {
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
  }
  Orphans(const Orphans&) = delete;
  Orphans& operator=(const Orphans&) = delete;
};

/// A state folder in which a helper may be installed. When a test ends, no helper is left.
class HelperFolderTest : public ::testing::Test {
 protected:
  HelperFolderTest() { simulate(1); }
  ~HelperFolderTest() override {
    endHelper();
    fs::remove_all(folder.path());
  }

  void endHelper() const {
    if (const auto running = helperIfThere()) {
      running->send(SIGKILL);
      EXPECT_TRUE(running->ends());
    }
  }

  void simulate(double speed) const {
    adapters::simulated::Simulation simulation;
    simulation.machine = "MacBook Pro M2 Pro";
    simulation.speed = speed;
    EXPECT_EQ(adapters::simulated::writeSimulation(folder.simulationFile(), simulation), "");
  }

  /// The process that listens at the socket.
  std::optional<Process> helperIfThere() const {
    const Descriptor client(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder.helperSocket();
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    if (::connect(client.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      return std::nullopt;
    }
    ucred listener{};
    socklen_t size = sizeof listener;
    EXPECT_EQ(getsockopt(client.get(), SOL_SOCKET, SO_PEERCRED, &listener, &size), 0);
    return Process(listener.pid);
  }
  Process helper() const {
    auto found = helperIfThere();
    if (!found) throw std::runtime_error("no helper listens");
    return std::move(*found);
  }

  static std::string makeFolder() {
    std::string pattern = "/tmp/pallimo-XXXXXX";
    return mkdtemp(pattern.data());
  }

  /// Puts a helper where an installation would have left it.
  void installHelper(const fs::path& program = kEmbeddedHelper) const {
    const fs::path installed = folder.installedHelper();
    fs::create_directories(installed.parent_path());
    fs::copy_file(program, installed);
    fs::permissions(installed, fs::perms(0755));
  }

  const Orphans orphans;  // last to go: after the connector, which waits for children of its own
  const StateFolder folder{makeFolder()};
};

/// The same with the app's end of the link.
class LinkTest : public HelperFolderTest {
 protected:
  ~LinkTest() override { endHelper(); }

  /// A client, and the one process that its request started.
  Process longRun(Client& client) const {
    client.request(kHour);
    // The answer comes after the request was served.
    EXPECT_TRUE(client.isAnswered());
    const auto started = helper().children();
    if (started.size() != 1) throw std::runtime_error("not one run");
    return Process(started[0]);
  }

  std::unique_ptr<base::SerialThread> delivery = std::make_unique<base::SerialThread>();
  std::unique_ptr<adapters::linux::DBusHelperConnector> link =
      std::make_unique<adapters::linux::DBusHelperConnector>(
          *delivery, folder, adapters::linux::HelperLauncher(folder));
  ports::HelperConnector& connector = *link;  // as long as the link is there
};

/// The same with the helper installed.
class HelperTest : public LinkTest {
 protected:
  HelperTest() { installHelper(); }
};

}  // namespace pallimo::end_to_end
