// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_messages.h"

#include <gtest/gtest.h>

#include <cmath>

namespace pallimo::adapters::linux {
namespace {

DBusMessagePtr makeCall(const char* path, const char* interface, const char* method) {
  return DBusMessagePtr(dbus_message_new_method_call(nullptr, path, interface, method));
}

std::string signatureOf(const DBusMessagePtr& message) {
  return dbus_message_get_signature(message.get());
}

/// Replies can be made only to messages that have been numbered.
DBusMessagePtr numbered(DBusMessagePtr message) {
  dbus_message_set_serial(message.get(), 7);
  return message;
}

TEST(DBusMessages, InterfacesCarryTheProtocolVersion) {
  EXPECT_EQ(helperInterface(), "com.ostrovane.powermetrics.Helper1");
  EXPECT_EQ(clientInterface(), "com.ostrovane.powermetrics.Client1");
}

TEST(DBusMessages, ObjectsLiveAtTheHelpersPath) {
  EXPECT_STREQ(dbus_message_get_path(makeGetVersion().get()), "/com/ostrovane/powermetrics");
}

TEST(DBusMessages, EveryMessageIsReadAsWhatItIs) {
  using Kind = HelperCall::Kind;
  EXPECT_EQ(readHelperCall(*makeIsResponding())->kind, Kind::kIsResponding);
  EXPECT_EQ(readHelperCall(*makeUnInstallHelper())->kind, Kind::kUnInstallHelper);
  EXPECT_EQ(readHelperCall(*makeGetVersion())->kind, Kind::kGetVersion);
  EXPECT_EQ(readHelperCall(*makeRequestPowermetrics(1, true))->kind, Kind::kRequestPowermetrics);
  EXPECT_EQ(readHelperCall(*makeCloseHelper())->kind, Kind::kCloseHelper);
}

TEST(DBusMessages, MethodsAreNamedInPascalCase) {
  EXPECT_STREQ(dbus_message_get_member(makeIsResponding().get()), "IsResponding");
  EXPECT_STREQ(dbus_message_get_member(makeUnInstallHelper().get()), "UnInstallHelper");
  EXPECT_STREQ(dbus_message_get_member(makeGetVersion().get()), "GetVersion");
  EXPECT_STREQ(dbus_message_get_member(makeRequestPowermetrics(1, true).get()),
               "RequestPowermetrics");
  EXPECT_STREQ(dbus_message_get_member(makeCloseHelper().get()), "CloseHelper");
  EXPECT_STREQ(dbus_message_get_member(makePowermetricsResult(std::nullopt).get()),
               "PowermetricsResult");
}

TEST(DBusMessages, OnlyTheTwoQuestionsExpectAReply) {
  const auto expectsReply = [](const DBusMessagePtr& message) {
    return dbus_message_get_no_reply(message.get()) == FALSE;
  };
  EXPECT_TRUE(expectsReply(makeIsResponding()));
  EXPECT_TRUE(expectsReply(makeGetVersion()));
  EXPECT_FALSE(expectsReply(makeUnInstallHelper()));
  EXPECT_FALSE(expectsReply(makeRequestPowermetrics(1, true)));
  EXPECT_FALSE(expectsReply(makeCloseHelper()));
  EXPECT_FALSE(expectsReply(makePowermetricsResult(std::nullopt)));
}

TEST(DBusMessages, ARequestCarriesItsArguments) {
  const auto message = makeRequestPowermetrics(1234.5, true);
  EXPECT_EQ(signatureOf(message), "db");
  const auto call = readHelperCall(*message);
  EXPECT_EQ(call->msSampling, 1234.5);
  EXPECT_TRUE(call->includeGPU);
  EXPECT_FALSE(readHelperCall(*makeRequestPowermetrics(1, false))->includeGPU);
}

TEST(DBusMessages, ARequestMayCarryAnyNumber) {
  EXPECT_TRUE(std::isnan(readHelperCall(*makeRequestPowermetrics(NAN, true))->msSampling));
  EXPECT_EQ(readHelperCall(*makeRequestPowermetrics(-INFINITY, true))->msSampling, -INFINITY);
}

TEST(DBusMessages, ACallWithAnotherNameInterfaceOrPathIsRefused) {
  const char* const interface = "com.ostrovane.powermetrics.Helper1";
  EXPECT_TRUE(readHelperCall(*makeCall(kLinkObjectPath, interface, "GetVersion")));
  EXPECT_FALSE(readHelperCall(*makeCall(kLinkObjectPath, interface, "getVersion")));
  EXPECT_FALSE(readHelperCall(*makeCall("/", interface, "GetVersion")));
  EXPECT_FALSE(readHelperCall(*makeCall(kLinkObjectPath, nullptr, "GetVersion")));
  EXPECT_FALSE(readHelperCall(
      *makeCall(kLinkObjectPath, "com.ostrovane.powermetrics.Helper2", "GetVersion")));
}

TEST(DBusMessages, ACallWithAnotherSignatureIsRefused) {
  const auto request = makeCall(kLinkObjectPath, helperInterface().c_str(), "RequestPowermetrics");
  EXPECT_FALSE(readHelperCall(*request));
  const dbus_int32_t number = 1;
  dbus_message_append_args(request.get(), DBUS_TYPE_INT32, &number, DBUS_TYPE_INVALID);
  EXPECT_FALSE(readHelperCall(*request));
  const auto version = makeGetVersion();
  dbus_message_append_args(version.get(), DBUS_TYPE_INT32, &number, DBUS_TYPE_INVALID);
  EXPECT_FALSE(readHelperCall(*version));
}

TEST(DBusMessages, ASignalIsNoCall) {
  const DBusMessagePtr signal(
      dbus_message_new_signal(kLinkObjectPath, helperInterface().c_str(), "GetVersion"));
  EXPECT_FALSE(readHelperCall(*signal));
}

TEST(DBusMessages, RepliesCarryTheirValue) {
  const auto call = numbered(makeIsResponding());
  EXPECT_EQ(readBoolReply(*makeReply(*call, true)), true);
  EXPECT_EQ(readBoolReply(*makeReply(*call, false)), false);
  EXPECT_EQ(readTextReply(*makeReply(*call, std::string("1.0 é"))), "1.0 é");
}

TEST(DBusMessages, AReplyOfAnotherTypeIsRefused) {
  const auto call = numbered(makeGetVersion());
  EXPECT_FALSE(readTextReply(*makeReply(*call, true)));
  EXPECT_FALSE(readBoolReply(*makeReply(*call, std::string("yes"))));
  EXPECT_FALSE(readTextReply(*call));
}

TEST(DBusMessages, ATextThatIsNotUtf8CanNotBeSent) {
  EXPECT_FALSE(makeReply(*numbered(makeGetVersion()), std::string("\xff")));
}

TEST(DBusMessages, AResultCarriesItsDocument) {
  const base::Bytes document = {0, 1, 2, 255};
  const auto message = makePowermetricsResult(document);
  EXPECT_EQ(signatureOf(message), "bay");
  EXPECT_EQ(readPowermetricsResult(*message)->document, document);
}

TEST(DBusMessages, AnEmptyDocumentIsNotAnAbsentOne) {
  EXPECT_EQ(readPowermetricsResult(*makePowermetricsResult(base::Bytes()))->document,
            base::Bytes());
  EXPECT_EQ(readPowermetricsResult(*makePowermetricsResult(std::nullopt))->document, std::nullopt);
}

TEST(DBusMessages, ADocumentThatIsTooLongGoesAsAnAbsentOne) {
  EXPECT_TRUE(
      readPowermetricsResult(*makePowermetricsResult(base::Bytes(kLongestDocument)))->document);
  EXPECT_FALSE(
      readPowermetricsResult(*makePowermetricsResult(base::Bytes(kLongestDocument + 1)))->document);
}

TEST(DBusMessages, AResultOfAnotherTypeIsRefused) {
  const auto message = makeCall(kLinkObjectPath, clientInterface().c_str(), "PowermetricsResult");
  EXPECT_FALSE(readPowermetricsResult(*message));
  const char* const text = "document";
  dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
  EXPECT_FALSE(readPowermetricsResult(*message));
  EXPECT_FALSE(readPowermetricsResult(*makeGetVersion()));
}

TEST(DBusMessages, AnAddressIsEscaped) {
  EXPECT_EQ(unixSocketAddress("/a/b-c.d"), "unix:path=/a/b-c.d");
  EXPECT_EQ(unixSocketAddress("/a b,c;é"), "unix:path=/a%20b%2cc%3b%c3%a9");
}

}  // namespace
}  // namespace pallimo::adapters::linux
