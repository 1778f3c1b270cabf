// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "adapters/linux/link/dbus_listener_limits.h"
#include "adapters/linux/link/dbus_messages.h"
#include "end_to_end/helper_fixture.h"
#include "end_to_end/untested.h"
#include "unit/adapters/linux/link/link_peers.h"

// The real helper and clients that mean it no good, or know no better.

namespace pallimo::end_to_end {
namespace {

using namespace std::chrono_literals;
namespace link_test = adapters::linux::link_test;
using adapters::linux::DBusMessagePtr;
using adapters::linux::makeRequestPowermetrics;
using link_test::RawBus;
using link_test::RawSocket;

constexpr uid_t kNobody = 65'534;

class HostileClients : public HelperTest {
 protected:
  static constexpr int kFlood = 200'000;
  static constexpr std::chrono::seconds kPatience{kIsSanitized ? 30 : 5};

  ~HostileClients() override {
    // Whatever was done: this is still the same helper, and it serves.
    EXPECT_TRUE(good.isAnswered());
    EXPECT_FALSE(good.version().empty());
    EXPECT_EQ(helper().number(), first.number());
  }

  /// Whether somebody of another user gets as far as having proven who he is. A process of its own,
  /// with plain system calls: other threads of the test are not copied.
  enum class Admission { kNotReached, kSentAway, kServed };
  Admission admissionOfNobody() const {
    const std::string path = folder.helperSocket();
    const std::string proof = link_test::authExternal(kNobody);
    const pid_t child = fork();
    if (child == 0) {
      if (setresuid(kNobody, kNobody, kNobody) != 0) _exit(-1);
      RawSocket client(path.c_str());
      if (!client.isConnected()) _exit(static_cast<int>(Admission::kNotReached));
      client.write(proof);
      char line[128];
      client.readUntil('\n', line, sizeof line);
      client.write("BEGIN\r\n");
      _exit(static_cast<int>(client.meetsEnd() ? Admission::kSentAway : Admission::kServed));
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return static_cast<Admission>(WEXITSTATUS(status));
  }

  /// From now on powermetrics prints so many bytes.
  void simulateDocumentsOf(std::size_t size) const {
    const fs::path recording = fs::path(folder.path()) / "recording";
    fs::create_directory(recording);
    std::ofstream(recording / "machine.json")
        << R"({"format": 1, "name": "Talkative", "sysctl": {}, )"
        << R"("steps": [{"powermetrics": "long.plist"}]})";
    const std::string begin = "<?xml version=\"1.0\"?><plist><string>";
    const std::string end = "</string></plist>\n";
    std::ofstream(recording / "long.plist")
        << begin << std::string(size - begin.size() - end.size(), 'x') << end;
    adapters::simulated::Simulation simulation;
    simulation.recording = recording;
    EXPECT_EQ(adapters::simulated::writeSimulation(folder.simulationFile(), simulation), "");
  }

  static void send(RawBus& bus, const DBusMessagePtr& message) {
    dbus_connection_send(bus.get(), message.get(), nullptr);
  }
  /// Whether a result brings one; a result is all that a client is sent unasked.
  static bool hasDocument(const DBusMessagePtr& result) {
    dbus_bool_t has = FALSE;
    EXPECT_NE(
        dbus_message_get_args(result.get(), nullptr, DBUS_TYPE_BOOLEAN, &has, DBUS_TYPE_INVALID),
        FALSE);
    return has != FALSE;
  }
  /// The others notice nothing of a flood.
  void expectQuickAnswer() {
    const auto asked = std::chrono::steady_clock::now();
    EXPECT_TRUE(good.isAnswered());
    EXPECT_LT(std::chrono::steady_clock::now() - asked, kPatience);
  }

  Process startedHelper() {
    EXPECT_TRUE(good.isAnswered());
    return helper();
  }

  /// Kilobytes that the helper has occupied at most.
  long mostMemory() const { return first.number("VmHWM"); }

  Client good{connector};
  const Process first = startedHelper();
};

TEST_F(HostileClients, AnotherUserDoesNotReachTheSocket) {
  if (geteuid() != 0) {
    reportUntested("One user can't become another");
    return;
  }
  EXPECT_EQ(admissionOfNobody(), Admission::kNotReached);
}

TEST_F(HostileClients, AnotherUserThatHasReachedTheSocketIsSentAway) {
  if (geteuid() != 0) {
    reportUntested("One user can't become another");
    return;
  }
  chmod(folder.path().c_str(), 0755);
  chmod(folder.helperSocket().c_str(), 0666);
  EXPECT_EQ(admissionOfNobody(), Admission::kSentAway);
}

TEST_F(HostileClients, RandomBytesEndTheirConnection) {
  std::mt19937 random(20'261'121);
  for (int round = 0; round < 200; ++round) {
    RawSocket client(folder);
    if (round % 2 == 0) client.write(link_test::authExternal(geteuid()) + "BEGIN\r\n");
    // At least the fixed part of a message, or what comes may still become one.
    std::string noise(16 + random() % 8192, '\0');
    for (char& byte : noise) byte = static_cast<char>(random());
    // Half of those who are let in begin as a message does.
    // A zero begins a handshake, whose end would be waited for.
    if (round % 2 != 0 && noise[0] == '\0') noise[0] = '\1';
    if (round % 4 == 0) noise = std::string("l\1\0\1", 4) + noise;
    client.write(noise);
    EXPECT_TRUE(client.meetsEnd());  // though it could still be spoken to
  }
}

TEST_F(HostileClients, HalfAHandshakeIsSentAwayAndOthersAreServedMeanwhile) {
  std::vector<RawSocket> halfway;
  for (int index = 0; index < 10; ++index) {
    halfway.emplace_back(folder);
    if (index % 2 == 0) halfway.back().write(link_test::authExternal(geteuid()));
  }
  EXPECT_TRUE(Client(connector).isAnswered());
  for (RawSocket& client : halfway) EXPECT_TRUE(client.meetsEnd());
}

TEST_F(HostileClients, ConnectionsBeyondTheLimitAreRefusedAndTheOthersServed) {
  const std::size_t kLetIn = adapters::linux::DBusListenerLimits().unauthenticatedPeers;
  std::vector<RawSocket> silent;
  for (int index = 0; index < 300; ++index) silent.emplace_back(folder);
  EXPECT_TRUE(good.isAnswered());
  EXPECT_LE(std::distance(fs::directory_iterator(first.folder() / "fd"), {}), 100);
  // The few that were let in say nothing and are sent away in their own time.
  for (std::size_t index = kLetIn; index < silent.size(); ++index) {
    EXPECT_TRUE(silent[index].meetsEnd());
  }
}

TEST_F(HostileClients, PeriodsThatAreNoneAreAnsweredWithoutADocument) {
  const std::vector<double> odd = {std::nan(""),
                                   -std::nan(""),
                                   std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(),
                                   1e300,
                                   -1,
                                   0,
                                   -0.0,
                                   0.999,
                                   3'600'000.001,
                                   std::numeric_limits<double>::denorm_min()};
  Client client(connector);
  for (const double period : odd) client.request(period);
  EXPECT_EQ(client.results(odd.size()), std::vector<std::string>(odd.size(), "(absent)"));
  EXPECT_TRUE(first.children().empty());
}

TEST_F(HostileClients, TwoHundredThousandRequestsTakeNoMemory) {
  constexpr long kMostGrowth = kIsSanitized ? 1L << 20 : 4L << 10;
  RawBus flood(folder);
  const long before = mostMemory();
  for (int request = 1; request <= kFlood; ++request) {
    const DBusMessagePtr message = makeRequestPowermetrics(kHour, request % 2 == 0);
    dbus_connection_send(flood.get(), message.get(), nullptr);
    if (request % 1000 != 0) continue;
    dbus_connection_flush(flood.get());
    if (request % 20'000 == 0) {
      EXPECT_TRUE(good.isAnswered());
    }
  }
  // The last of them has been read when the answer to this has come.
  EXPECT_EQ(flood.ask(adapters::linux::makeIsResponding()), "reply");
  EXPECT_EQ(first.children().size(), 64u);
  EXPECT_LT(mostMemory() - before, kMostGrowth);
}

TEST_F(HostileClients, AFloodOfRefusalsBehindARunIsAnsweredInOrderAndKeepsNobodyWaiting) {
  RawBus flood(folder);
  send(flood, makeRequestPowermetrics(500, false));
  const DBusMessagePtr refused = makeRequestPowermetrics(-1, false);
  for (int request = 1; request <= kFlood; ++request) {
    send(flood, DBusMessagePtr(dbus_message_copy(refused.get())));
    if (request % 1000 == 0) dbus_connection_flush(flood.get());
    if (request % 20'000 == 0) expectQuickAnswer();
  }
  const auto deadline = std::chrono::steady_clock::now() + kDeadline;
  int results = 0;
  while (results <= kFlood && std::chrono::steady_clock::now() < deadline) {
    dbus_connection_read_write(flood.get(), 100);
    while (const DBusMessagePtr message{dbus_connection_pop_message(flood.get())}) {
      ASSERT_EQ(hasDocument(message), results == 0) << results;
      if (++results % 20'000 == 0) expectQuickAnswer();
    }
  }
  EXPECT_EQ(results, kFlood + 1);
}

/// Proves who it is, asks, and never reads.
class DeafClient {
 public:
  explicit DeafClient(const StateFolder& folder)
      : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const sockaddr_un address = link_test::socketAddress(folder.helperSocket().c_str());
    EXPECT_EQ(connect(socket_.get(), link_test::generic(address), sizeof address), 0);
    write(link_test::authExternal(geteuid()) + "BEGIN\r\n");
  }

  void send(const DBusMessagePtr& message) {
    char* bytes = nullptr;
    int length = 0;
    dbus_message_set_serial(message.get(), ++serial_);
    ASSERT_NE(dbus_message_marshal(message.get(), &bytes, &length), FALSE);
    write(std::string(bytes, static_cast<std::size_t>(length)));
    dbus_free(bytes);
  }
  bool isSentAway() const {
    pollfd end = {socket_.get(), 0, 0};
    return poll(&end, 1, static_cast<int>(std::chrono::milliseconds(kDeadline).count())) == 1;
  }

 private:
  void write(const std::string& bytes) const {
    EXPECT_EQ(::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(bytes.size()));
  }

  const Descriptor socket_;
  dbus_uint32_t serial_ = 0;
};

TEST_F(HostileClients, AFloodOfRefusalsThatNobodyReadsKeepsNobodyWaiting) {
  constexpr long kMostGrowth = kIsSanitized ? 2L << 20 : 256L << 10;
  const long before = mostMemory();
  {
    DeafClient deaf(folder);
    deaf.send(makeRequestPowermetrics(500, false));
    const DBusMessagePtr refused = makeRequestPowermetrics(-1, false);
    for (int request = 1; request <= kFlood; ++request) {
      deaf.send(refused);
      if (request % 20'000 == 0) expectQuickAnswer();
    }
    // The run before them ends, and all of them are answered.
    Client other(connector);
    other.request(1000);
    EXPECT_EQ(other.results(1).size(), 1u);
    expectQuickAnswer();
  }
  expectQuickAnswer();
  EXPECT_LT(mostMemory() - before, kMostGrowth);
}

TEST_F(HostileClients, OneThatLeavesItsDocumentsUnreadIsSentAway) {
  constexpr long kMostGrowth = kIsSanitized ? 2L << 20 : 256L << 10;
  simulateDocumentsOf(15 << 20);
  const long before = mostMemory();
  DeafClient deaf(folder);
  for (int request = 0; request < 6; ++request) deaf.send(makeRequestPowermetrics(1, false));
  EXPECT_TRUE(deaf.isSentAway());
  EXPECT_LT(mostMemory() - before, kMostGrowth);
}

TEST_F(HostileClients, OneThatLeavesItsDocumentsUnreadTakesNothingFromTheOthers) {
  simulateDocumentsOf(1 << 20);
  DeafClient deaf(folder);
  for (int request = 0; request < 16; ++request) deaf.send(makeRequestPowermetrics(1, false));
  Client other(connector);
  other.request(1);
  const auto results = other.results(1);
  ASSERT_EQ(results.size(), 1u);
  EXPECT_EQ(results[0].size(), 1u << 20);
}

}  // namespace
}  // namespace pallimo::end_to_end
