// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <regex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "adapters/linux/dbus_helper_connection.h"
#include "adapters/linux/helper_launcher.h"
#include "adapters/linux/posix_process.h"
#include "adapters/linux/state_folder.h"
#include "adapters/simulated/simulation_file.h"
#include "base/serial_thread.h"

// The real helper in a state folder of its own, the real stand-in for powermetrics, and the app's
// end of the link.

namespace pallimo {
namespace {

namespace fs = std::filesystem;
using adapters::linux::Descriptor;
using adapters::linux::StateFolder;
using namespace std::chrono_literals;

constexpr auto kDeadline = 60s;
constexpr double kHour = 3'600'000;

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
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

/// The app's end of one connection.
class Client {
 public:
  explicit Client(ports::HelperConnector& connector)
      : state_(std::make_shared<State>()),
        connection_(connector.connect(helper_link::protocol::kMachServiceName,
                                      helper_link::protocol::kConnectionPrivileged)) {
    connection_->setExportedObject(state_);
    connection_->setInterruptionHandler([state = state_] { state->lose("interrupted"); });
    connection_->setInvalidationHandler([state = state_] { state->lose("invalidated"); });
    connection_->resume();
  }
  ~Client() { drop(); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  void drop() {
    if (!connection_) return;
    connection_->setInterruptionHandler(nullptr);
    connection_->setInvalidationHandler(nullptr);
    connection_->invalidate();
    connection_.reset();
  }

  std::shared_ptr<helper_link::protocol::XPCProtocol> helper() const {
    return connection_->remoteObjectProxy();
  }
  void request(double msSampling, bool includeGPU = false) const {
    helper()->requestPowermetrics(msSampling, includeGPU);
  }

  /// Whether the helper answers on this connection.
  bool isAnswered() {
    const auto before = state_->answers();
    helper()->isResponding([state = state_](bool isResponding) {
      if (isResponding) state->answer("responding");
    });
    return state_->waitForAnswers(before + 1);
  }
  std::string version() {
    const auto before = state_->answers();
    helper()->getVersion([state = state_](const std::string& text) { state->answer(text); });
    return state_->waitForAnswers(before + 1) ? state_->lastAnswer() : "(no answer)";
  }
  /// The first `count` results, "(absent)" among them.
  std::vector<std::string> results(std::size_t count) { return state_->waitForResults(count); }
  std::string loss() { return state_->waitForLoss(); }

 private:
  class State final : public helper_link::protocol::ClientProtocol {
   public:
    void powermetricsResult(std::optional<base::Bytes> document) override {
      change([&] {
        results_.push_back(document ? std::string(document->begin(), document->end())
                                    : std::string("(absent)"));
      });
    }
    void answer(const std::string& text) {
      change([&] { answers_.push_back(text); });
    }
    void lose(const std::string& how) {
      change([&] { loss_ += how; });
    }

    std::size_t answers() {
      const std::lock_guard lock(mutex_);
      return answers_.size();
    }
    std::string lastAnswer() {
      const std::lock_guard lock(mutex_);
      return answers_.back();
    }
    bool waitForAnswers(std::size_t count) {
      std::unique_lock lock(mutex_);
      changed_.wait_for(lock, kDeadline,
                        [&] { return answers_.size() >= count || !loss_.empty(); });
      return answers_.size() >= count && loss_.empty();
    }
    std::vector<std::string> waitForResults(std::size_t count) {
      std::unique_lock lock(mutex_);
      changed_.wait_for(lock, kDeadline,
                        [&] { return results_.size() >= count || !loss_.empty(); });
      return results_;
    }
    std::string waitForLoss() {
      std::unique_lock lock(mutex_);
      changed_.wait_for(lock, kDeadline, [&] { return !loss_.empty(); });
      return loss_;
    }

   private:
    template <class Change>
    void change(Change apply) {
      const std::lock_guard lock(mutex_);
      apply();
      changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> results_;
    std::vector<std::string> answers_;
    std::string loss_;
  };

  const std::shared_ptr<State> state_;
  std::shared_ptr<ports::HelperConnection> connection_;
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

class HelperProcessTest : public ::testing::Test {
 protected:
  HelperProcessTest() {
    const fs::path installed = folder.installedHelper();
    fs::create_directories(installed.parent_path());
    fs::copy_file(fs::path(PALLIMO_BIN_DIR) / "com.ostrovane.powermetrics", installed);
    fs::permissions(installed, fs::perms(0755));
    simulate(1);
  }
  ~HelperProcessTest() override {
    if (const auto running = helperIfThere()) {
      running->send(SIGKILL);
      EXPECT_TRUE(running->ends());
    }
    fs::remove_all(folder.path());
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

  /// A client, and the one process that its request started.
  Process longRun(Client& client) const {
    client.request(kHour);
    // The answer comes after the request was served.
    EXPECT_TRUE(client.isAnswered());
    const auto started = helper().children();
    if (started.size() != 1) throw std::runtime_error("not one run");
    return Process(started[0]);
  }

  static std::string makeFolder() {
    std::string pattern = "/tmp/pallimo-XXXXXX";
    return mkdtemp(pattern.data());
  }

  const Orphans orphans;  // last to go: after the connector, which waits for children of its own
  const StateFolder folder{makeFolder()};
  base::SerialThread delivery;
  adapters::linux::DBusHelperConnector connector{delivery, folder,
                                                 adapters::linux::HelperLauncher(folder)};
};

TEST_F(HelperProcessTest, IsStartedByTheFirstClient) {
  EXPECT_FALSE(helperIfThere());
  Client client(connector);
  EXPECT_TRUE(client.isAnswered());
  EXPECT_TRUE(helperIfThere());
}

TEST_F(HelperProcessTest, AnswersWithItsVersion) {
  Client client(connector);
  EXPECT_TRUE(std::regex_match(client.version(), std::regex(R"(\d+\.\d+\.\d+)")));
}

TEST_F(HelperProcessTest, SendsADocument) {
  Client client(connector);
  client.request(50);
  const auto results = client.results(1);
  ASSERT_EQ(results.size(), 1U);
  EXPECT_EQ(results[0].substr(0, 5), "<?xml");
  EXPECT_NE(results[0].find("<key>processor</key>"), std::string::npos);
  EXPECT_EQ(results[0].find("<key>gpu</key>"), std::string::npos);
}

TEST_F(HelperProcessTest, SendsTheGpuOnRequest) {
  Client client(connector);
  client.request(50, true);
  const auto results = client.results(1);
  ASSERT_EQ(results.size(), 1U);
  EXPECT_NE(results[0].find("<key>gpu</key>"), std::string::npos);
}

TEST_F(HelperProcessTest, AnswersInTheOrderOfTheRequests) {
  Client client(connector);
  client.request(400);
  client.request(std::numeric_limits<double>::quiet_NaN());
  client.request(1, true);
  const auto results = client.results(3);
  ASSERT_EQ(results.size(), 3U);
  EXPECT_EQ(results[0].find("<key>gpu</key>"), std::string::npos);
  EXPECT_EQ(results[1], "(absent)");
  EXPECT_NE(results[2].find("<key>gpu</key>"), std::string::npos);
}

TEST_F(HelperProcessTest, SendsAnAbsentDocumentWhenTheToolFails) {
  fs::remove(folder.simulationFile());
  Client client(connector);
  client.request(50);
  EXPECT_EQ(client.results(1), std::vector<std::string>{"(absent)"});
}

TEST_F(HelperProcessTest, RunsSixtyFourSideBySideAndNoMore) {
  Client client(connector);
  for (int i = 0; i < 70; ++i) client.request(kHour);
  ASSERT_TRUE(client.isAnswered());
  EXPECT_EQ(helper().children().size(), 64U);
}

TEST_F(HelperProcessTest, StartsTheToolWithItsArgumentsAndNothingElse) {
  Client client(connector);
  const auto run = longRun(client);
  const auto words = [](std::string text) {
    std::replace(text.begin(), text.end(), '\0', '\n');
    return text;
  };
  EXPECT_EQ(words(contents(run.folder() / "cmdline")),
            std::string(PALLIMO_BIN_DIR) +
                "/powermetrics\n-n\n1\n-i\n3600000\n-f\nplist\n--samplers\ncpu_power,ane_power\n");
  EXPECT_EQ(words(contents(run.folder() / "environ")),
            "PATH=/usr/bin:/bin:/usr/sbin:/sbin\nPALLIMO_SIMULATION=" + folder.simulationFile() +
                "\nPALLIMO_REQUEST=1\n");
}

TEST_F(HelperProcessTest, LendsTheToolAPipeAndNoOtherDescriptor) {
  Client client(connector);
  const auto run = longRun(client);
  // The tool may be opening files of its own at this moment.
  std::map<std::string, int> kinds;
  for (const auto& entry : fs::directory_iterator(run.folder() / "fd")) {
    std::error_code hasClosed;
    const std::string target = fs::read_symlink(entry.path(), hasClosed);
    ++kinds[target.substr(0, target.find(':'))];
  }
  EXPECT_EQ(kinds["/dev/null"], 2);
  EXPECT_EQ(kinds["pipe"], 1);
  EXPECT_EQ(kinds["socket"], 0);
  EXPECT_EQ(kinds["anon_inode"], 0);
  EXPECT_EQ(kinds[folder.helperLock()], 0);
}

TEST_F(HelperProcessTest, EndsTheRunsOfAClientThatGoes) {
  Client stays(connector);
  ASSERT_TRUE(stays.isAnswered());
  Client client(connector);
  const auto run = longRun(client);
  client.drop();
  EXPECT_TRUE(run.ends());
  EXPECT_TRUE(stays.isAnswered());
}

TEST_F(HelperProcessTest, LeavesNoRunBehindWhenItIsKilled) {
  Client client(connector);
  const auto run = longRun(client);
  helper().send(SIGKILL);
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(run.ends());
}

TEST_F(HelperProcessTest, LeavesNeitherRunNorSocketWhenItIsTerminated) {
  Client client(connector);
  const auto run = longRun(client);
  const auto process = helper();
  process.send(SIGTERM);
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(run.ends());
  EXPECT_TRUE(process.ends());
  EXPECT_FALSE(fs::exists(folder.helperSocket()));
}

TEST_F(HelperProcessTest, IsReplacedAfterItWasKilled) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  helper().send(SIGKILL);
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(Client(connector).isAnswered());
}

TEST_F(HelperProcessTest, EndsSomeTimeAfterItsLastClientHasGone) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  const auto process = helper();
  client.drop();
  EXPECT_TRUE(process.ends());
  EXPECT_FALSE(fs::exists(folder.helperSocket()));
}

TEST_F(HelperProcessTest, EndsWhenToldToClose) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  const auto process = helper();
  client.helper()->closeHelper();
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(process.ends());
  EXPECT_TRUE(fs::exists(folder.installedHelper()));
}

TEST_F(HelperProcessTest, ServesOthersAfterItWasToldToClose) {
  Client other(connector);
  ASSERT_TRUE(other.isAnswered());
  const auto process = helper();
  Client client(connector);
  client.helper()->closeHelper();
  EXPECT_EQ(client.loss(), "interrupted");
  other.request(50);
  EXPECT_EQ(other.results(1).size(), 1U);
  other.drop();
  EXPECT_TRUE(process.ends());
}

TEST_F(HelperProcessTest, RemovesItselfWhenToldToUninstall) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  const auto process = helper();
  client.helper()->unInstallHelper();
  EXPECT_EQ(client.loss(), "interrupted");
  EXPECT_TRUE(process.ends());
  EXPECT_FALSE(fs::exists(folder.installedHelper()));
  Client next(connector);
  EXPECT_EQ(next.loss(), "invalidated");
}

TEST_F(HelperProcessTest, EndsQuietlyBesideAnotherHelper) {
  Client client(connector);
  ASSERT_TRUE(client.isAnswered());
  std::string path = folder.installedHelper();
  char* const arguments[] = {path.data(), nullptr};
  char* const environment[] = {nullptr};
  pid_t second = 0;
  ASSERT_EQ(posix_spawn(&second, path.c_str(), nullptr, nullptr, arguments, environment), 0);
  int status = -1;
  ASSERT_EQ(waitpid(second, &status, 0), second);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(client.isAnswered());
}

TEST_F(HelperProcessTest, SleepsBetweenRequests) {
  Client client(connector);
  client.request(10);
  ASSERT_EQ(client.results(1).size(), 1U);
  ASSERT_TRUE(client.isAnswered());
  const auto process = helper();
  ASSERT_TRUE(client.isAnswered());  // the look at the socket has been dealt with
  const long before = process.number("voluntary_ctxt_switches");
  EXPECT_FALSE(process.endsWithin(1s));
  EXPECT_LE(process.number("voluntary_ctxt_switches") - before, 2);
}

TEST_F(HelperProcessTest, KeepsNoDescriptorOfFinishedRunsAndGoneClients) {
  simulate(100);
  Client client(connector);
  const auto descriptors = [this, &client] {
    const auto process = helper();
    EXPECT_TRUE(client.isAnswered());
    return std::distance(fs::directory_iterator(process.folder() / "fd"), {});
  };
  ASSERT_TRUE(client.isAnswered());
  const auto before = descriptors();
  for (int round = 0; round < 20; ++round) {
    Client brief(connector);
    for (int i = 0; i < 5; ++i) brief.request(10);
    ASSERT_EQ(brief.results(5).size(), 5U);
  }
  // The last client's end may reach the helper after our question.
  auto after = descriptors();
  for (int round = 0; round < 1000 && after > before; ++round) after = descriptors();
  EXPECT_LE(after, before);
  EXPECT_TRUE(helper().children().empty());
}

TEST_F(HelperProcessTest, NeverMeetsAClientWhileItIsEnding) {
  for (int round = 0; round < 1000; ++round) {
    Client client(connector);
    ASSERT_TRUE(client.isAnswered()) << "round " << round << ": " << client.loss();
    if (round % 3 == 0) client.helper()->closeHelper();
  }
}

}  // namespace
}  // namespace pallimo
