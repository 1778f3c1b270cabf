// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What stands on the helper's socket: any bytes, and messages that are nearly ours. Both ends read
// each message as at most one thing; what is built of that is read as the same again. The helper
// answers whatever sequence comes: the n-th result answers the n-th request, a client gets no more
// runs than it may have, and nothing but numbers reaches a command line.
//
// The first byte of the input chooses between a stream of bytes and a sequence of built messages.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "adapters/linux/link/dbus_messages.h"
#include "fakes/fake_child_processes.h"
#include "fakes/manual_main_queue.h"
#include "fakes/recording_lines.h"
#include "fuzz/message_builder.h"
#include "fuzz/require.h"
#include "helper/client_session.h"
#include "helper/powermetrics_runs.h"

namespace {

using namespace pallimo;
using namespace pallimo::adapters::linux;
using fuzz::require;
using Document = std::optional<base::Bytes>;
using Kind = HelperCall::Kind;

constexpr std::size_t kMostMessages = 200;

DBusMessagePtr messageOf(std::span<const std::uint8_t> bytes) {
  return DBusMessagePtr(dbus_message_demarshal(reinterpret_cast<const char*>(bytes.data()),
                                               static_cast<int>(bytes.size()), nullptr));
}

/// As it comes out at the other end.
DBusMessagePtr sent(const DBusMessagePtr& message) {
  require(message != nullptr);
  if (dbus_message_get_serial(message.get()) == 0) dbus_message_set_serial(message.get(), 1);
  char* bytes = nullptr;
  int size = 0;
  require(dbus_message_marshal(message.get(), &bytes, &size) != FALSE);
  DBusMessagePtr arrived =
      messageOf({reinterpret_cast<const std::uint8_t*>(bytes), static_cast<std::size_t>(size)});
  dbus_free(bytes);
  require(arrived != nullptr);
  return arrived;
}

DBusMessagePtr made(const HelperCall& call) {
  switch (call.kind) {
    case Kind::kIsResponding:
      return makeIsResponding();
    case Kind::kUnInstallHelper:
      return makeUnInstallHelper();
    case Kind::kGetVersion:
      return makeGetVersion();
    case Kind::kRequestPowermetrics:
      return makeRequestPowermetrics(call.msSampling, call.includeGPU);
    case Kind::kCloseHelper:
      return makeCloseHelper();
  }
  std::abort();
}

/// To the bit, so that not-a-number equals itself.
bool isSame(double left, double right) { return std::memcmp(&left, &right, sizeof left) == 0; }

void checkCall(const HelperCall& call) {
  const auto again = readHelperCall(*sent(made(call)));
  require(again && again->kind == call.kind && again->includeGPU == call.includeGPU);
  require(isSame(again->msSampling, call.msSampling));
}

void checkResult(const Document& document) {
  const auto again = readPowermetricsResult(*sent(makePowermetricsResult(document)));
  require(again && again->document == document);
}

void checkReply(std::optional<bool> flag, const std::optional<std::string>& text) {
  const DBusMessagePtr question = makeGetVersion();
  dbus_message_set_serial(question.get(), 7);
  if (flag) require(readBoolReply(*sent(makeReply(*question, *flag))) == flag);
  if (text) require(readTextReply(*sent(makeReply(*question, *text))) == text);
}

/// What the two ends make of a message; the helper's call, if it is one.
std::optional<HelperCall> readByBoth(DBusMessage& message) {
  const auto call = readHelperCall(message);
  const auto result = readPowermetricsResult(message);
  const auto flag = readBoolReply(message);
  const auto text = readTextReply(message);
  require(int{call.has_value()} + result.has_value() + flag.has_value() + text.has_value() <= 1);
  if (call) checkCall(*call);
  if (result) checkResult(result->document);
  checkReply(flag, text);
  return call;
}

bool isDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

void checkCommand(const ports::ChildCommand& command) {
  require(command.path == "/usr/bin/powermetrics" && command.arguments.size() == 8);
  require(isDigits(command.arguments[3]));
  const long period = std::stol(command.arguments[3]);
  require(period >= 1 && period <= 3'600'000);
  const std::string& samplers = command.arguments[7];
  require(samplers == "cpu_power,ane_power" || samplers == "cpu_power,gpu_power,ane_power");
  require(command.environment.size() == 1 && command.environment[0].starts_with("PATH="));
}

/// The app's end, on the helper's side of the link.
class Peer final : public ports::HelperPeer {
 public:
  void powermetricsResult(Document document) override {
    checkResult(document);
    results.push_back(std::move(document));
  }
  void close() override {}

  std::vector<Document> results;
};

class Owner final : public helper::ClientSession::Owner {
 public:
  void uninstallRequested(helper::ClientSession& session) override { closeRequested(session); }
  void closeRequested(helper::ClientSession& session) override {
    session.end();
    hasClosed = true;
  }

  bool hasClosed = false;
};

/// The helper with one client.
class Helper {
 public:
  ~Helper() { session_->end(); }

  void answer(DBusMessage& message, const HelperCall& call) {
    const bool wasClosed = owner_->hasClosed;
    switch (call.kind) {
      case Kind::kIsResponding:
        session_->isResponding([&](bool value) { replied(makeReply(message, value)); });
        break;
      case Kind::kGetVersion:
        session_->getVersion([&](const std::string& text) { replied(makeReply(message, text)); });
        break;
      case Kind::kRequestPowermetrics:
        request(call);
        break;
      case Kind::kUnInstallHelper:
        session_->unInstallHelper();
        break;
      case Kind::kCloseHelper:
        session_->closeHelper();
        break;
    }
    const bool isQuestion = call.kind == Kind::kIsResponding || call.kind == Kind::kGetVersion;
    require(std::exchange(hasReplied_, false) == (isQuestion && !wasClosed));
    require(children_.running() <= helper::kMostRuns);
  }

  /// Lets a run end, the oldest or the newest, with that output.
  void finishOne(bool isOldest, const std::string& output) {
    std::vector<std::size_t> running;
    for (const auto& [child, request] : runs_) {
      if (children_.isRunning(child)) running.push_back(child);
    }
    if (running.empty()) return;
    const std::size_t child = isOldest ? running.front() : running.back();
    printed_[runOf(child)] = output;
    children_.print(child, output);
  }

  void finishAll() {
    for (std::size_t left = children_.running(); left > 0; --left) finishOne(true, "<dict/>");
    // Each turn answers as many refused requests as it may at once.
    for (std::size_t turn = 0; turn <= kMostMessages; ++turn) queue_.run();
    if (owner_->hasClosed) return require(children_.running() == 0);
    require(peer_->results.size() == printed_.size());
    for (std::size_t index = 0; index < printed_.size(); ++index) {
      checkOutput(printed_[index], peer_->results[index]);
    }
  }

 private:
  void request(const HelperCall& call) {
    const std::size_t before = children_.count();
    session_->requestPowermetrics(call.msSampling, call.includeGPU);
    require(children_.count() <= before + 1);
    if (children_.count() == before + 1) {
      checkCommand(children_.command(before));
      runs_.emplace_back(before, printed_.size());
    }
    printed_.emplace_back();
  }

  void replied(const DBusMessagePtr& reply) {
    const DBusMessagePtr arrived = sent(reply);
    require(readBoolReply(*arrived) == true || readTextReply(*arrived) == "1.0");
    hasReplied_ = true;
  }

  std::size_t runOf(std::size_t child) const {
    for (const auto& [one, request] : runs_) {
      if (one == child) return request;
    }
    std::abort();
  }

  /// Of the output the NULs around it are taken off, unless it is binary.
  static void checkOutput(const std::string& output, const Document& result) {
    const bool isBlank = output.find_first_not_of('\0') == std::string::npos;
    require(result.has_value() == !isBlank);
    if (isBlank) return;
    const std::string text(result->begin(), result->end());
    if (output.starts_with("bplist")) return require(text == output);
    const std::size_t begin = output.find_first_not_of('\0');
    require(text == output.substr(begin, output.find_last_not_of('\0') + 1 - begin));
  }

  fakes::ManualMainQueue queue_;
  fakes::FakeChildProcesses children_;
  fakes::RecordingSystemLog log_;
  helper::PowermetricsRuns powermetrics_{{children_, log_},
                                         {.path = "/usr/bin/powermetrics", .hasAnePower = true}};
  const std::shared_ptr<Peer> peer_ = std::make_shared<Peer>();
  const std::shared_ptr<Owner> owner_ = std::make_shared<Owner>();
  const std::shared_ptr<helper::ClientSession> session_ = std::make_shared<helper::ClientSession>(
      helper::ClientSession::Services{queue_, powermetrics_, owner_}, "1.0", peer_);
  bool hasReplied_ = false;
  std::vector<std::pair<std::size_t, std::size_t>> runs_;  // of each: the child and the request
  std::vector<std::string> printed_;                       // for each request
};

std::string bodyOf(DBusMessage& message) {
  const auto result = readPowermetricsResult(message);
  if (!result || !result->document) return "";
  return {result->document->begin(), result->document->end()};
}

/// One message at the helper. A result that a client sends is none to it; here it is what
/// powermetrics prints next.
void take(Helper& helper, DBusMessage& message) {
  const auto call = readByBoth(message);
  if (call) return helper.answer(message, *call);
  const bool isOldest = dbus_message_get_serial(&message) % 2 == 0;
  if (readPowermetricsResult(message)) helper.finishOne(isOldest, bodyOf(message));
}

void takeStream(Helper& helper, std::span<const std::uint8_t> bytes) {
  for (std::size_t count = 0; count < kMostMessages; ++count) {
    const int needed = dbus_message_demarshal_bytes_needed(
        reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
    if (needed <= 0 || static_cast<std::size_t>(needed) > bytes.size()) return;
    const auto length = static_cast<std::size_t>(needed);
    const DBusMessagePtr message = messageOf(bytes.first(length));
    if (!message) return;  // as the link is, which ends over such a message
    take(helper, *message);
    bytes = bytes.subspan(length);
  }
}

void takeBuilt(Helper& helper, std::span<const std::uint8_t> bytes) {
  fuzz::Bytes input(bytes);
  for (std::size_t count = 0; count < kMostMessages && !input.isEmpty(); ++count) {
    const fuzz::BuiltMessage built = fuzz::buildMessage(input);
    const DBusMessagePtr arrived = sent(built.message);
    require(readHelperCall(*arrived).has_value() == built.isHelperCall);
    require(readPowermetricsResult(*arrived).has_value() == built.isResult);
    take(helper, *arrived);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::span<const std::uint8_t> bytes(data + 1, size - 1);
  Helper helper;
  if (data[0] % 2 == 0) {
    takeStream(helper, bytes);
  } else {
    takeBuilt(helper, bytes);
  }
  helper.finishAll();
  return 0;
}
