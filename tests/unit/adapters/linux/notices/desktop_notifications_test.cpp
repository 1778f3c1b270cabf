// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/desktop_notifications.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <iterator>

#include "unit/adapters/linux/link/link_peers.h"
#include "unit/adapters/linux/notices/desktop_notifications_fixture.h"

namespace pallimo::adapters::linux {
namespace {

using namespace std::chrono_literals;
using desktop_test::DesktopService;
using desktop_test::kDeadline;
using desktop_test::Lines;
using desktop_test::TestBus;
using Manner = desktop_test::DesktopService::Manner;
using Hints = std::map<std::string, std::string>;

/// Nobody is given up by accident.
constexpr NoticeLimits kPatient{kDeadline, kDeadline};

ports::UserNotification notice(std::string title, std::string subtitle) {
  ports::UserNotification made;
  made.title = std::move(title);
  made.subtitle = std::move(subtitle);
  made.playsDefaultSound = true;
  made.delay = 0.05;
  return made;
}

/// One whose time never comes by itself.
ports::UserNotification lateNotice(std::string title) {
  auto made = notice(std::move(title), "s");
  made.delay = 24 * 3600;
  return made;
}

/// Says how notices are shown, and remembers which.
class Presenter final : public ports::UserNotificationsDelegate {
 public:
  explicit Presenter(std::uint32_t presentation) : presentation_(presentation) {}
  std::uint32_t willPresentNotification(const ports::UserNotification& shown) override {
    asked.add(shown.title);
    return presentation_;
  }
  link_test::EventLog asked;

 private:
  const std::uint32_t presentation_;
};

/// The bus is started by the tests that need it.
class DesktopNotificationsTest : public testing::Test {
 protected:
  void create(NoticeLimits limits = kPatient) {
    notifications_ = std::make_unique<DesktopNotifications>(
        console_, std::vector<std::string>{bus_.address()}, limits);
  }
  void add(std::string title, std::string subtitle) {
    notifications_->add(notice(std::move(title), std::move(subtitle)));
  }
  /// Afterwards everything has been shown, written or given up.
  void finish() { notifications_.reset(); }
  Lines written() { return console_.log.all(); }
  std::shared_ptr<Presenter> present(std::uint32_t presentation) {
    const auto presenter = std::make_shared<Presenter>(presentation);
    notifications_->setDelegate(presenter);
    return presenter;
  }

  link_test::TemporaryFolder folder_;
  TestBus bus_{folder_};
  desktop_test::WaitingConsole console_;
  std::unique_ptr<DesktopNotifications> notifications_;
};

/// With a bus, a desktop that takes notices, and patience.
class ShownNoticesTest : public DesktopNotificationsTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(bus_.start());
    desktop_ = std::make_unique<DesktopService>(bus_);
    ASSERT_TRUE(desktop_->isServing());
    create();
  }
  std::unique_ptr<DesktopService> desktop_;
};

TEST_F(ShownNoticesTest, ShowTitleAndSubtitle) {
  add("Logging started", "The log file will be written when logging is stopped.");
  ASSERT_TRUE(desktop_->waitForCalls(1));
  add("Logging ended", "Saved at: /home/ann/a.csv");
  ASSERT_TRUE(desktop_->waitForCalls(2));
  EXPECT_EQ(desktop_->texts(),
            (Lines{"Logging started: The log file will be written when logging is stopped.",
                   "Logging ended: Saved at: /home/ann/a.csv"}));
}

TEST_F(ShownNoticesTest, AreNotWrittenToTheConsole) {
  add("t", "s");
  finish();
  EXPECT_EQ(desktop_->texts(), Lines{"t: s"});
  EXPECT_EQ(written(), Lines{});
}

TEST_F(ShownNoticesTest, StandBesideOneAnotherWhenTheyComeInQuickSuccession) {
  add("Logging ended", "Saved at: /a.csv");
  add("Logging ended", "Saved at: /a.csv");
  finish();
  ASSERT_EQ(desktop_->texts(),
            (Lines{"Logging ended: Saved at: /a.csv", "Logging ended: Saved at: /a.csv"}));
  for (const auto& call : desktop_->calls()) EXPECT_EQ(call.replacesId, 0u);
}

TEST_F(ShownNoticesTest, KeepTheOrderInWhichTheyWereAdded) {
  Lines expected;
  for (int number = 0; number < 20; ++number) {
    add(std::to_string(number), "s");
    expected.push_back(std::to_string(number) + ": s");
  }
  finish();
  EXPECT_EQ(desktop_->texts(), expected);
}

TEST_F(ShownNoticesTest, CanCarryAnyPath) {
  add("t", "/a\nb<i>&\xFF.csv");
  finish();
  EXPECT_EQ(desktop_->texts(), Lines{"t: /a\nb&lt;i&gt;&amp;\xEF\xBF\xBD.csv"});
}

TEST_F(ShownNoticesTest, CanBeAddedByManyThreads) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this] {
      for (int number = 0; number < 10; ++number) add("t", "s");
    });
  }
  for (auto& thread : threads) thread.join();
  finish();
  EXPECT_EQ(desktop_->calls().size(), 40u);
}

TEST_F(ShownNoticesTest, WaitForTheirTimeWithoutHoldingUpOthers) {
  notifications_->add(lateNotice("late"));
  add("soon", "s");
  ASSERT_TRUE(desktop_->waitForCalls(1));
  EXPECT_EQ(desktop_->texts(), Lines{"soon: s"});
}

TEST_F(ShownNoticesTest, DoNotWaitForTheirTimeAtTheEnd) {
  notifications_->add(lateNotice("late"));
  finish();
  EXPECT_EQ(desktop_->texts(), Lines{"late: s"});
}

TEST_F(ShownNoticesTest, ComeAtOnceWhenTheirDelayIsNone) {
  for (const double delay : {0.0, -1.0, std::nan("")}) {
    auto prompt = notice("prompt", "s");
    prompt.delay = delay;
    notifications_->add(prompt);
  }
  EXPECT_TRUE(desktop_->waitForCalls(3));
}

TEST_F(ShownNoticesTest, SoundWhenTheyAskAndTheDelegateAgrees) {
  const auto presenter = present(18);
  add("t", "s");
  finish();
  ASSERT_EQ(desktop_->calls().size(), 1u);
  EXPECT_EQ(desktop_->calls()[0].hints, (Hints{{"sound-name", "dialog-information"}}));
}

TEST_F(ShownNoticesTest, AreSilentWhenTheyDoNotAskForSound) {
  auto silent = notice("t", "s");
  silent.playsDefaultSound = false;
  notifications_->add(silent);
  finish();
  ASSERT_EQ(desktop_->calls().size(), 1u);
  EXPECT_EQ(desktop_->calls()[0].hints, (Hints{{"suppress-sound", "true"}}));
}

TEST_F(ShownNoticesTest, AreSilentWhenTheDelegateWantsABannerOnly) {
  const auto presenter = present(16);
  add("t", "s");
  finish();
  ASSERT_EQ(desktop_->calls().size(), 1u);
  EXPECT_EQ(desktop_->calls()[0].hints, (Hints{{"suppress-sound", "true"}}));
}

TEST_F(ShownNoticesTest, AreNoneWhenTheDelegateWantsNoBanner) {
  const auto presenter = present(2);
  add("t", "s");
  finish();
  EXPECT_EQ(presenter->asked.all(), Lines{"t"});
  EXPECT_EQ(desktop_->texts(), Lines{});
  EXPECT_EQ(written(), Lines{});
}

TEST_F(ShownNoticesTest, AreShownAsTheyAskWhenTheDelegateIsGone) {
  present(0).reset();
  add("t", "s");
  finish();
  ASSERT_EQ(desktop_->calls().size(), 1u);
  EXPECT_EQ(desktop_->calls()[0].hints, (Hints{{"sound-name", "dialog-information"}}));
}

TEST_F(ShownNoticesTest, AreAskedAboutWhenTheirTimeHasCome) {
  const auto presenter = present(18);
  notifications_->add(lateNotice("late"));
  add("soon", "s");
  ASSERT_TRUE(desktop_->waitForCalls(1));
  EXPECT_EQ(presenter->asked.all(), Lines{"soon"});
  finish();
  EXPECT_EQ(presenter->asked.all(), (Lines{"soon", "late"}));
}

TEST_F(ShownNoticesTest, AreOnlyTriedOnceByAServiceThatRefuses) {
  desktop_->setManner(Manner::kRefuses);
  add("t", "s");
  ASSERT_TRUE(console_.log.waitForSize(1));
  desktop_->setManner(Manner::kAnswers);
  add("u", "s");
  finish();
  EXPECT_EQ(desktop_->texts(), (Lines{"t: s", "u: s"}));
  EXPECT_EQ(written(), Lines{"t: s"});
}

TEST_F(ShownNoticesTest, GoToTheConsoleWhenTheBusDiesAndToTheDesktopWhenItIsBack) {
  add("first", "s");
  ASSERT_TRUE(desktop_->waitForCalls(1));
  bus_.stop();
  add("second", "s");
  // The first may stand there too: the bus may have died before it told that it was shown.
  ASSERT_TRUE(console_.log.waitFor("second: s"));
  ASSERT_TRUE(bus_.start());
  DesktopService desktop(bus_);
  add("third", "s");
  finish();
  EXPECT_EQ(desktop.texts(), Lines{"third: s"});
  EXPECT_EQ(console_.log.count("third: s"), 0u);
}

TEST_F(ShownNoticesTest, GoToTheConsoleWhenTheBusDiesBeforeTheAnswer) {
  desktop_->setManner(Manner::kHangs);
  add("t", "s");
  ASSERT_TRUE(desktop_->waitForCalls(1));
  bus_.stop();
  ASSERT_TRUE(console_.log.waitForSize(1));
  EXPECT_EQ(written(), Lines{"t: s"});
}

TEST_F(ShownNoticesTest, ComeOverTheFirstBusThatListens) {
  notifications_ = std::make_unique<DesktopNotifications>(
      console_, std::vector<std::string>{"unix:path=" + folder_.path() + "/none", bus_.address()},
      kPatient);
  add("t", "s");
  finish();
  EXPECT_EQ(desktop_->texts(), Lines{"t: s"});
}

TEST_F(DesktopNotificationsTest, WritesANoticeThatAHangingServiceDoesNotTake) {
  ASSERT_TRUE(bus_.start());
  DesktopService desktop(bus_, Manner::kHangs);
  create({50ms, kDeadline});
  add("t", "s");
  ASSERT_TRUE(console_.log.waitForSize(1));
  EXPECT_EQ(written(), Lines{"t: s"});
}

TEST_F(DesktopNotificationsTest, StaysOnTheBusOfAServiceThatHangs) {
  ASSERT_TRUE(bus_.start());
  DesktopService desktop(bus_, Manner::kHangs);
  create({500ms, kDeadline});
  add("t", "s");
  ASSERT_TRUE(console_.log.waitForSize(1));
  desktop.setManner(Manner::kAnswers);
  add("u", "s");
  finish();
  ASSERT_EQ(desktop.texts(), (Lines{"t: s", "u: s"}));
  EXPECT_EQ(desktop.calls()[0].sender, desktop.calls()[1].sender);
}

TEST_F(DesktopNotificationsTest, WaitsForAHangingServiceAtTheEndNoLongerThanItsLimit) {
  ASSERT_TRUE(bus_.start());
  DesktopService desktop(bus_, Manner::kHangs);
  create({24h, 50ms});
  add("t", "s");
  ASSERT_TRUE(desktop.waitForCalls(1));
  notifications_->add(lateNotice("late"));
  finish();
  EXPECT_EQ(written(), (Lines{"t: s", "late: s"}));
}

TEST_F(DesktopNotificationsTest, WritesANoticeThatNoServiceTakes) {
  ASSERT_TRUE(bus_.start());
  create();
  add("t", "s");
  ASSERT_TRUE(console_.log.waitForSize(1));
  finish();
  EXPECT_EQ(written(), Lines{"t: s"});
}

TEST_F(DesktopNotificationsTest, LetsTheBusStartTheService) {
  const auto mark = folder_.path() + "/started";
  std::ofstream(folder_.path() + "/notifications.service")
      << "[D-BUS Service]\nName=org.freedesktop.Notifications\nExec=/bin/sh -c 'touch " << mark
      << "; exit 1'\n";
  bus_.configure("<servicedir>" + folder_.path() + "</servicedir>");
  ASSERT_TRUE(bus_.start());
  create();
  add("t", "s");
  ASSERT_TRUE(console_.log.waitForSize(1));
  EXPECT_TRUE(std::filesystem::exists(mark));
}

TEST_F(DesktopNotificationsTest, WritesANoticeWhenTheBusIsFull) {
  bus_.configure("<limit name=\"max_completed_connections\">0</limit>");
  ASSERT_TRUE(bus_.start());
  create();
  add("t", "s");
  finish();
  EXPECT_EQ(written(), Lines{"t: s"});
}

TEST_F(DesktopNotificationsTest, WritesANoticeWhenTheBusAnswersNobody) {
  ASSERT_TRUE(bus_.start());
  DesktopService desktop(bus_);
  create({50ms, kDeadline});
  bus_.freeze();
  add("t", "s");
  EXPECT_TRUE(console_.log.waitForSize(1));
  bus_.thaw();
  EXPECT_EQ(written(), Lines{"t: s"});
}

TEST_F(DesktopNotificationsTest, WaitsForAHangingBusAtTheEndNoLongerThanItsLimit) {
  ASSERT_TRUE(bus_.start());
  create({24h, 50ms});
  bus_.freeze();
  add("t", "s");
  finish();
  bus_.thaw();
  EXPECT_EQ(written(), Lines{"t: s"});
}

TEST_F(DesktopNotificationsTest, WritesEveryNoticeWithoutABus) {
  create();
  add("Logging started", "The log file will be written when logging is stopped.");
  add("Logging ended", "Saved at: /a.csv");
  finish();
  EXPECT_EQ(written(),
            (Lines{"Logging started: The log file will be written when logging is stopped.",
                   "Logging ended: Saved at: /a.csv"}));
}

TEST_F(DesktopNotificationsTest, WritesEveryNoticeWithoutAnAddress) {
  notifications_ = std::make_unique<DesktopNotifications>(console_, Lines{}, kPatient);
  add("t", "s");
  finish();
  EXPECT_EQ(written(), Lines{"t: s"});
}

TEST_F(DesktopNotificationsTest, WritesANoticeThatTheAddressMakesNoSenseFor) {
  notifications_ =
      std::make_unique<DesktopNotifications>(console_, Lines{"unix:", "unix:what=ever"}, kPatient);
  add("t", "s");
  finish();
  EXPECT_EQ(written(), Lines{"t: s"});
}

TEST_F(DesktopNotificationsTest, WritesANoticeOnOneLine) {
  create();
  add("t", "/a\nb\r.csv");
  finish();
  EXPECT_EQ(written(), Lines{"t: /a\\nb\\r.csv"});
}

TEST_F(DesktopNotificationsTest, WritesNothingThatTheDelegateDoesNotWantShown) {
  create();
  const auto presenter = present(0);
  add("t", "s");
  finish();
  EXPECT_EQ(written(), Lines{});
}

TEST_F(DesktopNotificationsTest, GrantsAuthorizationBeforeTheCallReturns) {
  create();
  std::optional<bool> isGranted;
  std::optional<std::string> problem;
  std::thread::id where;
  notifications_->requestAuthorization(6, [&](bool granted, std::optional<std::string> error) {
    isGranted = granted;
    problem = error;
    where = std::this_thread::get_id();
  });
  EXPECT_EQ(isGranted, true);
  EXPECT_EQ(problem, std::nullopt);
  EXPECT_EQ(where, std::this_thread::get_id());
}

TEST_F(DesktopNotificationsTest, TakesAQuestionWithoutAnAnswer) {
  create();
  notifications_->requestAuthorization(6, nullptr);
}

/// A socket that somebody listens at and nobody serves.
class SilentSocket {
 public:
  SilentSocket(const std::string& path, int backlog) : path_(path) {
    descriptor_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto address = link_test::socketAddress(path_.c_str());
    bind(descriptor_, link_test::generic(address), sizeof address);
    listen(descriptor_, backlog);
  }
  ~SilentSocket() { close(descriptor_); }
  SilentSocket(const SilentSocket&) = delete;
  SilentSocket& operator=(const SilentSocket&) = delete;

  bool hasConnection() const {
    pollfd waiting = {descriptor_, POLLIN, 0};
    return poll(&waiting, 1, 0) > 0;
  }
  /// How many have connected since.
  int acceptAll() const {
    int count = 0;
    while (hasConnection()) {
      close(accept(descriptor_, nullptr, nullptr));
      ++count;
    }
    return count;
  }
  /// Afterwards connecting waits.
  void fill() {
    do {
      connections_.emplace_back(path_.c_str(), SOCK_NONBLOCK);
    } while (connections_.back().isConnected());
  }

 private:
  const std::string path_;
  int descriptor_;
  std::vector<link_test::RawSocket> connections_;
};

std::ptrdiff_t entries(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), {});
}
std::ptrdiff_t threads() { return entries("/proc/self/task"); }
std::ptrdiff_t descriptors() { return entries("/proc/self/fd"); }

TEST_F(DesktopNotificationsTest, DoesNothingBeforeTheFirstNotice) {
  const SilentSocket bus(folder_.path() + "/bus", 10);
  const auto before = threads();
  create();
  const auto presenter = present(18);
  notifications_->requestAuthorization(6, [](bool, std::optional<std::string>) {});
  EXPECT_LE(threads(), before);
  finish();
  EXPECT_FALSE(bus.hasConnection());
}

TEST_F(DesktopNotificationsTest, ConnectsWhenTheFirstNoticeIsShownNotWhenItIsAdded) {
  const SilentSocket bus(folder_.path() + "/bus", 10);
  create({50ms, kDeadline});
  auto silent = present(0);
  add("unwanted", "s");
  ASSERT_TRUE(silent->asked.waitForSize(1));
  notifications_->add(lateNotice("late"));
  EXPECT_FALSE(bus.hasConnection());
  silent.reset();
  finish();
  EXPECT_TRUE(bus.hasConnection());
}

TEST_F(DesktopNotificationsTest, TriesAgainWithABusThatDidNotLetItIn) {
  const SilentSocket bus(folder_.path() + "/bus", 10);
  create({50ms, kDeadline});
  add("first", "s");
  ASSERT_TRUE(console_.log.waitForSize(1));
  add("second", "s");
  finish();
  EXPECT_EQ(written(), (Lines{"first: s", "second: s"}));
  EXPECT_EQ(bus.acceptAll(), 2);
}

TEST_F(DesktopNotificationsTest, EndsAlsoWhileConnectingToAnOverrunBus) {
  SilentSocket bus(folder_.path() + "/bus", 0);
  bus.fill();
  create({24h, 250ms});
  const auto presenter = present(18);
  // The thread that is left behind must not let go of the last link: the standard library counts
  // links out of the sanitizer's sight.
  [[maybe_unused]] static const auto* last = new std::weak_ptr(presenter);
  add("t", "s");
  ASSERT_TRUE(presenter->asked.waitForSize(1));
  finish();
  EXPECT_EQ(written(), Lines{});
}

TEST_F(DesktopNotificationsTest, LeavesNothingOpen) {
  ASSERT_TRUE(bus_.start());
  DesktopService desktop(bus_);
  const auto before = descriptors();
  create();
  add("t", "s");
  ASSERT_TRUE(desktop.waitForCalls(1));
  EXPECT_GT(descriptors(), before);
  finish();
  EXPECT_EQ(descriptors(), before);
}

TEST_F(DesktopNotificationsTest, LeavesNothingOpenOfABusThatDidNotLetItIn) {
  const SilentSocket bus(folder_.path() + "/bus", 10);
  const auto before = descriptors();
  create({50ms, kDeadline});
  add("first", "s");
  ASSERT_TRUE(console_.log.waitForSize(1));
  add("second", "s");
  finish();
  EXPECT_EQ(descriptors(), before);
}

}  // namespace
}  // namespace pallimo::adapters::linux
