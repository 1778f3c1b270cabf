// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_helper_listener.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <random>

#include "unit/adapters/linux/link/link_fixture.h"
#include "unit/adapters/linux/link/link_peers.h"

namespace pallimo::adapters::linux {
namespace {

using namespace link_test;
using Events = std::vector<std::string>;

constexpr uid_t kNobody = 65'534;

/// Whether the helper still serves a client that behaves.
void expectServes(const StateFolder& folder) {
  TestApp app(folder);
  app.connect();
  app.askVersion();
  EXPECT_TRUE(app.log->waitFor("1.2.3"));
}

DBusMessagePtr makeCall(const char* method) {
  return DBusMessagePtr(
      dbus_message_new_method_call(nullptr, kLinkObjectPath, helperInterface().c_str(), method));
}

DBusMessagePtr withText(DBusMessagePtr message, const std::string& text) {
  const char* const value = text.c_str();
  dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &value, DBUS_TYPE_INVALID);
  return message;
}

TEST(DBusHelperListener, ServesOnTheStateFoldersSocketForItsOwnerAlone) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  ASSERT_TRUE(helper.hasStarted());
  struct stat status = {};
  ASSERT_EQ(stat(folder.state().helperSocket().c_str(), &status), 0);
  EXPECT_TRUE(S_ISSOCK(status.st_mode));
  EXPECT_EQ(status.st_mode & 0777u, 0600u);
}

TEST(DBusHelperListener, ReplacesAStaleSocket) {
  TemporaryFolder folder;
  {
    RawListener dead(folder.state());
    ASSERT_TRUE(dead.isListening());
  }
  TestHelper helper(folder.state());
  ASSERT_TRUE(helper.hasStarted());
  expectServes(folder.state());
}

TEST(DBusHelperListener, DoesNotStartWhenAnotherServes) {
  TemporaryFolder folder;
  TestHelper first(folder.state());
  TestHelper second(folder.state());
  EXPECT_TRUE(first.hasStarted());
  EXPECT_FALSE(second.hasStarted());
  expectServes(folder.state());
  EXPECT_TRUE(first.log->waitFor("accept"));
}

TEST(DBusHelperListener, DoesNotStartWithAPathBeyondASocketAddress) {
  TemporaryFolder folder;
  const StateFolder deep(folder.path() + "/" + std::string(100, 'd'));
  std::filesystem::create_directory(deep.path());
  EXPECT_FALSE(TestHelper(deep).hasStarted());
}

TEST(DBusHelperListener, DoesNotStartWithoutItsFolder) {
  TemporaryFolder folder;
  EXPECT_FALSE(TestHelper(StateFolder(folder.path() + "/gone")).hasStarted());
}

TEST(DBusHelperListener, AFailedStartGivesTheLockUp) {
  TemporaryFolder folder;
  // A folder in the socket's place can't be replaced.
  std::filesystem::create_directory(folder.state().helperSocket());
  TestHelper helper(folder.state());
  EXPECT_FALSE(helper.hasStarted());
  std::filesystem::remove(folder.state().helperSocket());
  EXPECT_TRUE(TestHelper(folder.state()).hasStarted());
}

TEST(DBusHelperListener, ADestroyedListenerLeavesNoSocket) {
  TemporaryFolder folder;
  { TestHelper helper(folder.state()); }
  EXPECT_FALSE(std::filesystem::exists(folder.state().helperSocket()));
}

TEST(DBusHelperListener, ReportsEveryClientOnceWhenItComesAndWhenItGoes) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  for (std::size_t round = 1; round <= 3; ++round) {
    expectServes(folder.state());
    ASSERT_TRUE(helper.log->waitFor("disconnected", round));
  }
  helper.stop();
  EXPECT_EQ(helper.log->all(),
            Events({"accept", "disconnected", "accept", "disconnected", "accept", "disconnected"}));
}

TEST(DBusHelperListener, AClientThatIsSentAwayGetsEverythingFirst) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.proxy()->requestPowermetrics(1, false);
  app.proxy()->requestPowermetrics(16 << 20, true);
  for (int extra = 0; extra < 100; ++extra) app.proxy()->requestPowermetrics(2, false);
  ASSERT_TRUE(app.log->waitFor("interrupted"));
  app.endConnector();
  EXPECT_EQ(app.log->all(), Events({"document 1", "document 16777216", "interrupted"}));
  EXPECT_TRUE(helper.log->waitFor("disconnected"));
  EXPECT_EQ(helper.log->count("disconnected"), 1u);
}

TEST(DBusHelperListener, AClientThatIsSentAwayAndStaysIsDisconnectedAfterTheLimit) {
  TemporaryFolder folder;
  DBusListenerLimits limits;
  limits.flush = 20ms;
  TestHelper helper(folder.state(), limits);
  RawBus client(folder.state());
  client.sendAndFlush(makeRequestPowermetrics(16 << 20, true));
  EXPECT_TRUE(helper.log->waitFor("disconnected"));
}

/// A message as it stands on the socket.
std::string bytesOf(const DBusMessagePtr& message) {
  dbus_message_set_serial(message.get(), 1);
  char* bytes = nullptr;
  int length = 0;
  dbus_message_marshal(message.get(), &bytes, &length);
  const std::string copy(bytes, static_cast<std::size_t>(length));
  dbus_free(bytes);
  return copy;
}

/// A client that lets the helper write in vain, says one last thing while the helper looks
/// elsewhere, and closes over what it has not read: the helper then meets input and an error.
void sayOneLastThing(TestHelper& helper, const StateFolder& folder, const std::string& before) {
  RawSocket client(folder);
  client.write(authExternal(geteuid()) + "BEGIN\r\n" + before);
  ASSERT_TRUE(helper.log->waitFor(before.empty() ? "accept" : "request"));
  helper.whileItLooksElsewhere([&] {
    // More than libdbus reads at once.
    for (int count = 0; count < 100; ++count) client.write(bytesOf(makeUnInstallHelper()));
    client.write(bytesOf(makeCloseHelper()));
    const RawSocket closed = std::move(client);
  });
  EXPECT_TRUE(helper.log->waitFor("disconnected"));
  EXPECT_EQ(helper.log->count("closeHelper"), 1u);
}

TEST(DBusHelperListener, TheLastWordOfAClientThatReadsNothingIsHeard) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  sayOneLastThing(helper, folder.state(), "");
}

TEST(DBusHelperListener, TheLastWordIsHeardAlsoWhileALongDocumentIsBeingWritten) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  sayOneLastThing(helper, folder.state(), bytesOf(makeRequestPowermetrics(16 << 20, false)));
}

// Who is let in.

TEST(DBusHelperListener, AdmitsItsOwnUserAlone) {
  EXPECT_TRUE(DBusHelperListener::admits(geteuid()));
  EXPECT_FALSE(DBusHelperListener::admits(geteuid() + 1));
  EXPECT_EQ(DBusHelperListener::admits(0), geteuid() == 0);
}

TEST(DBusHelperListener, OffersNoProofButTheSystems) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  RawSocket client(folder.state());
  client.write(std::string_view("\0AUTH\r\n", 7));
  EXPECT_EQ(client.readLine(), "REJECTED EXTERNAL\r\n");
}

TEST(DBusHelperListener, RefusesCookiesAndStrangers) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  RawSocket client(folder.state());
  client.write(std::string_view("\0", 1));
  client.write("AUTH DBUS_COOKIE_SHA1 726f6f74\r\n");
  EXPECT_EQ(client.readLine(), "REJECTED EXTERNAL\r\n");
  client.write("AUTH ANONYMOUS 616263\r\n");
  EXPECT_EQ(client.readLine(), "REJECTED EXTERNAL\r\n");
}

TEST(DBusHelperListener, RefusesAClientThatClaimsToBeSomebodyElse) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  RawSocket client(folder.state());
  client.write(authExternal(geteuid() + 1));
  EXPECT_EQ(client.readLine(), "REJECTED EXTERNAL\r\n");
}

/// Proves to be nobody, in a process of nobody's. Returns whether the helper ended the connection.
bool isNobodyRefused(const StateFolder& folder) {
  const std::string path = folder.helperSocket();
  const std::string auth = authExternal(kNobody);
  const pid_t child = fork();
  if (child == 0) {
    // Only plain system calls: other threads of the test were not copied.
    if (setresuid(kNobody, kNobody, kNobody) != 0) _exit(2);
    RawSocket client(path.c_str());
    char line[128];
    const bool isSent = client.isConnected() && client.write(auth) &&
                        client.readUntil('\n', line, sizeof line) > 2 && line[0] == 'O' &&
                        client.write("BEGIN\r\n");
    _exit(isSent && client.meetsEnd() ? 0 : 1);
  }
  int status = -1;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(DBusHelperListener, RefusesAnotherUserThatHasFoundItsWayToTheSocket) {
  if (geteuid() != 0) return;  // one user can't become another
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  chmod(folder.path().c_str(), 0755);
  chmod(folder.state().helperSocket().c_str(), 0666);
  EXPECT_TRUE(isNobodyRefused(folder.state()));
  expectServes(folder.state());
  EXPECT_EQ(helper.log->count("accept"), 1u);
}

TEST(DBusHelperListener, RefusesRootWhenItIsNotRoots) {
  if (geteuid() != 0) return;  // one user can't become another
  TemporaryFolder folder;
  ASSERT_EQ(chown(folder.path().c_str(), kNobody, kNobody), 0);
  HelperProcess helper(folder.state(), kNobody);
  ASSERT_TRUE(helper.hasStarted());
  RawSocket root(folder.state());
  root.write(authExternal(0));
  ASSERT_EQ(root.readLine().substr(0, 3), "OK ");
  root.write("BEGIN\r\n");
  EXPECT_TRUE(root.meetsEnd());
}

// Clients that do not behave.

TEST(DBusHelperListener, AClientThatStaysSilentIsSentAway) {
  TemporaryFolder folder;
  DBusListenerLimits limits;
  limits.authentication = 50ms;
  TestHelper helper(folder.state(), limits);
  RawSocket silent(folder.state());
  RawSocket halfway(folder.state());
  halfway.write(authExternal(geteuid()));
  EXPECT_EQ(halfway.readLine().substr(0, 3), "OK ");
  EXPECT_TRUE(silent.meetsEnd());
  EXPECT_TRUE(halfway.meetsEnd());
  EXPECT_EQ(helper.log->all(), Events());
}

TEST(DBusHelperListener, AClientThatHasProvenWhoItIsMayStaySilent) {
  TemporaryFolder folder;
  DBusListenerLimits limits;
  limits.authentication = 50ms;
  TestHelper helper(folder.state(), limits);
  TestApp app(folder.state());
  app.connect();
  ASSERT_TRUE(helper.log->waitFor("accept"));
  EXPECT_TRUE(RawSocket(folder.state()).meetsEnd());  // the limit has passed
  app.askVersion();
  EXPECT_TRUE(app.log->waitFor("1.2.3"));
}

TEST(DBusHelperListener, TheFiveSecondsAndTheNumbersAreTheUsualLimits) {
  const DBusListenerLimits limits;
  EXPECT_EQ(limits.authentication, 5s);
  EXPECT_EQ(limits.unauthenticatedPeers, 16u);
  EXPECT_EQ(limits.peers, 64u);
  EXPECT_EQ(limits.outgoingBytes, 64 << 20);
  EXPECT_EQ(limits.incomingMessageBytes, 64 << 10);
}

TEST(DBusHelperListener, SilentClientsAreLimitedInNumber) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  std::vector<RawSocket> silent;
  for (int index = 0; index < 16; ++index) silent.emplace_back(folder.state());
  EXPECT_TRUE(RawSocket(folder.state()).meetsEnd());
  silent.pop_back();
  expectServes(folder.state());
}

TEST(DBusHelperListener, ClientsAreLimitedInNumber) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  std::vector<std::shared_ptr<ports::HelperConnection>> connections;
  for (std::size_t index = 1; index <= 64; ++index) {
    connections.push_back(app.makeConnection());
    connections.back()->resume();
    ASSERT_TRUE(helper.log->waitFor("accept", index));
  }
  EXPECT_TRUE(RawSocket(folder.state()).meetsEnd());
  connections.clear();
  ASSERT_TRUE(helper.log->waitFor("disconnected", 64));
  expectServes(folder.state());
}

TEST(DBusHelperListener, RandomBytesEndTheirConnectionAlone) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  std::mt19937 random(1);
  for (int round = 0; round < 200; ++round) {
    RawSocket client(folder.state());
    const bool isKnown = round % 2 == 0;
    if (isKnown) client.write(authExternal(geteuid()) + "BEGIN\r\n");
    std::string noise(random() % 4096, '\0');
    for (auto& byte : noise) byte = static_cast<char>(random());
    if (isKnown && random() % 2 == 0) noise = "l\1\0\1" + noise;
    client.write(noise);
    client.endWriting();
    EXPECT_TRUE(client.meetsEnd());
  }
  expectServes(folder.state());
}

TEST(DBusHelperListener, AMessageBeyondTheLimitEndsItsConnection) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  RawBus client(folder.state());
  EXPECT_EQ(client.ask(makeGetVersion()), "reply");
  client.sendAndFlush(withText(makeCall("GetVersion"), std::string(70'000, 'x')));
  EXPECT_TRUE(client.meetsEnd());
  EXPECT_TRUE(helper.log->waitFor("disconnected"));
}

TEST(DBusHelperListener, ADescriptorIsNotTaken) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  RawBus client(folder.state());
  EXPECT_EQ(client.ask(makeGetVersion()), "reply");
  const auto message = makeCall("GetVersion");
  const int descriptor = 0;
  dbus_message_append_args(message.get(), DBUS_TYPE_UNIX_FD, &descriptor, DBUS_TYPE_INVALID);
  client.sendAndFlush(message);
  EXPECT_TRUE(client.meetsEnd());
  expectServes(folder.state());
}

TEST(DBusHelperListener, UnknownCallsAreAnsweredWithAnError) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  RawBus client(folder.state());
  EXPECT_EQ(client.ask(makeCall("Nonsense")), DBUS_ERROR_UNKNOWN_METHOD);
  EXPECT_EQ(client.ask(DBusMessagePtr(dbus_message_new_method_call(
                nullptr, "/other", helperInterface().c_str(), "GetVersion"))),
            DBUS_ERROR_UNKNOWN_METHOD);
  EXPECT_EQ(client.ask(makeGetVersion()), "reply");
}

TEST(DBusHelperListener, CallsWithOtherArgumentsAreAnsweredWithAnError) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  RawBus client(folder.state());
  EXPECT_EQ(client.ask(makeCall("RequestPowermetrics")), DBUS_ERROR_UNKNOWN_METHOD);
  EXPECT_EQ(client.ask(withText(makeCall("RequestPowermetrics"), "1000")),
            DBUS_ERROR_UNKNOWN_METHOD);
  EXPECT_EQ(client.ask(withText(makeCall("GetVersion"), "x")), DBUS_ERROR_UNKNOWN_METHOD);
  EXPECT_EQ(helper.log->count("request"), 0u);
}

TEST(DBusHelperListener, AQuestionThatWantsNoReplyGetsNone) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  RawBus client(folder.state());
  const auto silent = makeGetVersion();
  dbus_message_set_no_reply(silent.get(), TRUE);
  client.sendAndFlush(silent);
  EXPECT_EQ(client.ask(makeIsResponding()), "reply");
  EXPECT_EQ(dbus_connection_pop_message(client.get()), nullptr);
}

TEST(DBusHelperListener, AClientThatDoesNotReadIsSentAway) {
  TemporaryFolder folder;
  DBusListenerLimits limits;
  limits.outgoingBytes = 4 << 20;
  TestHelper helper(folder.state(), limits);
  RawBus client(folder.state());
  for (int request = 0; request < 8; ++request) {
    client.sendAndFlush(makeRequestPowermetrics(1 << 20, false));
  }
  EXPECT_TRUE(helper.log->waitFor("disconnected"));
  expectServes(folder.state());
}

TEST(DBusHelperListener, AClientThatDoesNotReadErrorsIsSentAway) {
  TemporaryFolder folder;
  DBusListenerLimits limits;
  limits.outgoingBytes = 64 << 10;
  TestHelper helper(folder.state(), limits);
  RawBus client(folder.state());
  const auto deadline = std::chrono::steady_clock::now() + kDeadline;
  while (helper.log->count("disconnected") == 0 && std::chrono::steady_clock::now() < deadline) {
    for (int count = 0; count < 100; ++count) {
      dbus_connection_send(client.get(), makeCall("Nonsense").get(), nullptr);
    }
    if (dbus_connection_get_is_connected(client.get()) == FALSE) break;
  }
  EXPECT_TRUE(helper.log->waitFor("disconnected"));
}

}  // namespace
}  // namespace pallimo::adapters::linux
