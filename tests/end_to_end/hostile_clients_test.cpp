// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "adapters/linux/dbus_messages.h"
#include "end_to_end/helper_fixture.h"
#include "unit/adapters/linux/link_peers.h"

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

// A sanitizer keeps what was freed for a while.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#elif !defined(__has_feature)
constexpr bool kIsSanitized = false;
#elif __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

class HostileClients : public HelperTest {
 protected:
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
    std::cout << "One user can't become another, nothing was tested.\n";
    return;
  }
  EXPECT_EQ(admissionOfNobody(), Admission::kNotReached);
}

TEST_F(HostileClients, AnotherUserThatHasReachedTheSocketIsSentAway) {
  if (geteuid() != 0) {
    std::cout << "One user can't become another, nothing was tested.\n";
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
    std::string noise(random() % 8192, '\0');
    for (char& byte : noise) byte = static_cast<char>(random());
    // Half of those who are let in begin as a message does.
    if (round % 4 == 0) noise = "l\1\0\1" + noise;
    client.write(noise);
    client.endWriting();
    EXPECT_TRUE(client.meetsEnd());
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
  std::vector<RawSocket> silent;
  for (int index = 0; index < 300; ++index) silent.emplace_back(folder);
  EXPECT_TRUE(good.isAnswered());
  EXPECT_LE(std::distance(fs::directory_iterator(first.folder() / "fd"), {}), 100);
  for (RawSocket& client : silent) EXPECT_TRUE(client.meetsEnd());
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
  constexpr int kRequests = 200'000;
  constexpr long kMostGrowth = kIsSanitized ? 1L << 20 : 4L << 10;
  RawBus flood(folder);
  const long before = mostMemory();
  for (int request = 1; request <= kRequests; ++request) {
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
