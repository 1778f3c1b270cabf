// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Every failure of every port alone and in pairs, against the whole program: what a user sees while
// they last, and that it is right again when they end.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "scenarios/fault.h"
#include "scenarios/fault_expectation.h"
#include "scenarios/faulty_mac.h"

namespace pallimo::scenarios {

void PrintTo(const SeenSecond& seen, std::ostream* stream) {
  for (const std::string& row : seen.rows) *stream << "\n    " << row;
  *stream << "\n    log: " << seen.log << "\n    update: " << seen.update
          << "\n    served: " << seen.served;
}

namespace {

using Faults = std::vector<const Fault*>;

/// A Mac beside what is expected of it.
class WatchedMac {
 public:
  explicit WatchedMac(FaultyMacKind kind) : mac_(healthyWorld(kind)), expectation_(kind) {
    mac_.start();
  }

  void begin(const Fault& fault) {
    active_.push_back(&fault);
    // Of two that say something about the same the later one of the list counts.
    std::sort(active_.begin(), active_.end());
    change();
    fault.begins(mac_);
    expectation_.begins(fault);
  }
  void end(const Fault& fault) {
    std::erase(active_, &fault);
    change();
  }

  void pass(int seconds, const std::string& phase) {
    for (int second = 0; second < seconds && isRight_ && !expectation_.hasEnded(); ++second) {
      const SeenSecond expected = expectation_.second();
      SeenSecond seen = mac_.second();
      if (expectation_.hasEnded()) return;
      isRight_ = seen == expected;
      EXPECT_EQ(seen, expected) << phase << ", second " << second + 1;
    }
  }

  /// Runs that have to end do so within the limit of waiting.
  void expectEnding() {
    if (!isRight_) return;
    for (int second = 0; second < 6 && mac_.ending() == "running"; ++second) {
      if (expectation_.ending() == "running") break;
      mac_.second();
    }
    EXPECT_EQ(mac_.ending(), expectation_.ending());
    isRight_ = mac_.ending() == expectation_.ending();
  }

  bool isRight() const { return isRight_; }

 private:
  void change() {
    expectation_.setActive(active_);
    mac_.change(expectation_.world());
  }

  FaultyMac mac_;
  FaultExpectation expectation_;
  Faults active_;
  bool isRight_ = true;
};

/// Two healthy seconds, three with the fault, three after it.
void trySingle(FaultyMacKind kind, const Fault& fault) {
  WatchedMac mac(kind);
  mac.pass(2, "before");
  mac.begin(fault);
  mac.pass(3, "while it lasts");
  mac.end(fault);
  mac.pass(3, "after it");
  mac.expectEnding();
}

/// The second one begins and ends while, and after, the first one lasts. False when something is
/// wrong.
bool tryPair(FaultyMacKind kind, const Fault& first, const Fault& second) {
  WatchedMac mac(kind);
  mac.pass(2, "before");
  mac.begin(first);
  mac.pass(1, "the first alone");
  mac.begin(second);
  mac.pass(2, "both");
  mac.end(first);
  mac.pass(1, "the second alone");
  mac.end(second);
  mac.pass(2, "after both");
  mac.expectEnding();
  return mac.isRight();
}

/// A helper is lost while nobody can be asked for an authorisation: the program stops, which has a
/// test of its own.
bool isFatal(const Fault& first, const Fault& second) {
  return first.port == "AuthorizationServices" && second.name == fault_name::kHelperDies;
}

std::string faultTestName(const testing::TestParamInfo<std::size_t>& info) {
  std::string name;
  bool startsWord = true;
  for (const char c : runningFaults()[info.param].name) {
    const bool isWord = std::isalnum(static_cast<unsigned char>(c)) != 0;
    if (c == '-') name += "Minus";
    if (isWord) name += startsWord ? static_cast<char>(std::toupper(c)) : c;
    startsWord = !isWord && c != '\'';
  }
  return name;
}

class SingleFault : public testing::TestWithParam<std::size_t> {};

TEST_P(SingleFault, ChangesItsOwnFiguresAndIsOver) {
  trySingle(FaultyMacKind::smc, runningFaults()[GetParam()]);
}

TEST_P(SingleFault, ChangesItsOwnFiguresAndIsOverWhereTheHidSensorsAreRead) {
  trySingle(FaultyMacKind::hid, runningFaults()[GetParam()]);
}

class PairOfFaults : public testing::TestWithParam<std::size_t> {};

TEST_P(PairOfFaults, ChangesWhatBothChangeAndIsOver) {
  const Fault& first = runningFaults()[GetParam()];
  for (const Fault& second : runningFaults()) {
    if (&first == &second || isFatal(first, second)) continue;
    SCOPED_TRACE(first.name + ", then " + second.name);
    if (!tryPair(FaultyMacKind::smc, first, second)) break;
    const bool isHid = first.port == "HidClient" || second.port == "HidClient";
    if (isHid && !tryPair(FaultyMacKind::hid, first, second)) break;
  }
}

TEST(ListOfFaults, ThePageTellsTheirNumberAndNamesTheirPorts) {
  std::ifstream stream(PALLIMO_SOURCE_DIR "/docs/reliability.md");
  const std::string page((std::istreambuf_iterator<char>(stream)), {});
  EXPECT_NE(page.find(std::to_string(runningFaults().size()) + " failures"), std::string::npos);
  for (const Fault& fault : runningFaults()) {
    EXPECT_NE(page.find("| `" + fault.port + "` |"), std::string::npos) << fault.port;
  }
}

TEST(ListOfFaults, InteractionsNameFaultsOfTheList) {
  for (const Interaction& each : interactions()) {
    for (const std::string& name : {each.one, each.another}) {
      EXPECT_TRUE(std::any_of(runningFaults().begin(), runningFaults().end(),
                              [&](const Fault& fault) { return fault.name == name; }))
          << name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, SingleFault, testing::Range<std::size_t>(0, runningFaults().size()),
                         faultTestName);
INSTANTIATE_TEST_SUITE_P(All, PairOfFaults, testing::Range<std::size_t>(0, runningFaults().size()),
                         faultTestName);

}  // namespace
}  // namespace pallimo::scenarios
