// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Every way in which a run gives no document, alone and in pairs, and clients that leave at any
// moment: nobody else notices, and the next request is served.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <vector>

#include "unit/helper/helper_service_fixture.h"

namespace pallimo::helper {
namespace {

using End = ports::ChildOutcome::End;

/// A run of powermetrics as it may end.
struct RunEnd {
  std::string name;
  End end = End::exited;
  int code = 0;
  std::string printed;
  std::string result;     ///< what the client gets for it
  std::string complaint;  ///< the line in the log; empty: none

  ports::ChildOutcome outcome() const {
    return {end, code, base::Bytes(printed.begin(), printed.end())};
  }
};

const RunEnd& soundEnd() {
  static const RunEnd sound = {"a document", End::exited, 0, "<plist/>", "<plist/>", ""};
  return sound;
}

const std::vector<RunEnd>& runEnds() {
  static const std::vector<RunEnd> all = {
      soundEnd(),
      {"a status behind a document", End::exited, 1, "<plist/>", kAbsent,
       "powermetrics ended with status 1"},
      {"nothing printed", End::exited, 0, "", kAbsent, "powermetrics printed nothing"},
      {"nothing but the byte between documents", End::exited, 0, std::string(3, '\0'), kAbsent,
       "powermetrics printed nothing"},
      {"a signal behind a document", End::signalled, 9, "<plist/>", kAbsent,
       "powermetrics was ended by signal 9"},
      {"half a document in all its time", End::timedOut, 0, "<pli", kAbsent,
       "powermetrics took too long and was ended"},
      {"too much", End::tooMuchOutput, 0, "<plist>", kAbsent,
       "powermetrics printed more than 16777216 bytes and was ended"},
      {"no such program", End::notStarted, ENOENT, "", kAbsent,
       "powermetrics could not be started: No such file or directory"},
      {"no process to be had", End::notStarted, EAGAIN, "", kAbsent,
       "powermetrics could not be started: Resource temporarily unavailable"}};
  return all;
}

/// The helper with two clients; the first meets what goes wrong, the second must not notice.
class HelperFaults : public HelperServiceTest {
 protected:
  /// Numbers of runs, oldest first.
  using Order = std::vector<std::size_t>;

  void end(std::size_t run, const RunEnd& how) {
    children.finish(run, how.outcome());
    if (!how.complaint.empty()) complaints_.push_back(how.complaint);
    mainQueue.run();
  }
  /// Both clients ask for one more document and get it: whatever was wrong is over.
  void expectToGoOn() {
    for (const fakes::FakeHelperClient* client : {&first, &second}) {
      const std::size_t results = client->results().size();
      request(*client);
      end(children.count() - 1, soundEnd());
      ASSERT_EQ(client->results().size(), results + 1);
      EXPECT_EQ(client->results().back(), "<plist/>");
    }
    EXPECT_EQ(children.running(), 0u);
    EXPECT_EQ(log.lines(), complaints_);
    EXPECT_EQ(exits, 0);
  }

  fakes::FakeHelperClient first = listener.connect();
  fakes::FakeHelperClient second = listener.connect();

 private:
  Results complaints_;
};

TEST_F(HelperFaults, CostTheClientOneDocumentEach) {
  for (const RunEnd& fault : runEnds()) {
    SCOPED_TRACE(fault.name);
    request(first);
    request(second);
    const std::size_t last = children.count() - 1;
    end(last - 1, fault);
    EXPECT_EQ(first.results().back(), fault.result);
    end(last, soundEnd());
    expectToGoOn();
  }
}

TEST_F(HelperFaults, InPairsAreToldInTheOrderOfTheRequestsWhateverEndsFirst) {
  for (const RunEnd& one : runEnds()) {
    for (const RunEnd& other : runEnds()) {
      Order order = {0, 1, 2};
      do {
        SCOPED_TRACE(one.name + ", " + other.name);
        const std::size_t begun = children.count();
        const std::size_t told = first.results().size();
        for (int run = 0; run < 3; ++run) request(first);
        const std::array<const RunEnd*, 3> ends = {&one, &other, &soundEnd()};
        for (const std::size_t run : order) end(begun + run, *ends[run]);
        const Results results(first.results().begin() + static_cast<std::ptrdiff_t>(told),
                              first.results().end());
        EXPECT_EQ(results, (Results{one.result, other.result, "<plist/>"}));
        expectToGoOn();
      } while (std::next_permutation(order.begin(), order.end()));
    }
  }
}

TEST_F(HelperFaults, OfAClientThatLeavesAreNoOtherClients) {
  for (const RunEnd& fault : runEnds()) {
    // Before its run ends, and after: the run behind it is under way at either moment.
    for (const bool hasEnded : {false, true}) {
      SCOPED_TRACE(fault.name + (hasEnded ? ", then it leaves" : ", it left before"));
      const auto leaving = listener.connect();
      const std::size_t begun = children.count();
      for (int run = 0; run < 2; ++run) request(leaving);
      request(second);
      if (hasEnded) end(begun, fault);
      listener.disconnect(leaving);
      EXPECT_EQ(leaving.results(), hasEnded ? Results{fault.result} : Results{});
      EXPECT_EQ(children.running(), 1u) << "a run of nobody";
      end(begun + 2, soundEnd());
      expectToGoOn();
    }
  }
}

TEST_F(HelperFaults, BehindRefusedRequestsStayInTheirPlaces) {
  for (const RunEnd& fault : runEnds()) {
    SCOPED_TRACE(fault.name);
    const auto asking = listener.connect();
    const std::size_t begun = children.count();
    request(asking);
    asking.helper->requestPowermetrics(-1, false);
    request(asking);
    end(begun + 1, fault);
    EXPECT_EQ(asking.results(), Results{}) << "the first is still to come";
    end(begun, soundEnd());
    EXPECT_EQ(asking.results(), (Results{"<plist/>", kAbsent, fault.result}));
    listener.disconnect(asking);
  }
  EXPECT_EQ(children.running(), 0u);
}

class ClosedHelperFaults : public HelperFaults,
                           public ::testing::WithParamInterface<std::size_t> {};

TEST_P(ClosedHelperFaults, AreStillToldAndItEndsBehindThem) {
  const RunEnd& fault = runEnds().at(GetParam());
  SCOPED_TRACE(fault.name);
  request(first);
  request(second);
  second.helper->closeHelper();
  EXPECT_FALSE(listener.isListening);
  EXPECT_EQ(children.running(), 1u) << "what the leaving client asked for";
  listener.disconnect(second);
  end(0, fault);
  EXPECT_EQ(first.results(), Results{fault.result});
  EXPECT_EQ(exits, 0);
  listener.disconnect(first);
  EXPECT_EQ(exits, 1);
}
INSTANTIATE_TEST_SUITE_P(Each, ClosedHelperFaults,
                         ::testing::Range(std::size_t{0}, runEnds().size()));

}  // namespace
}  // namespace pallimo::helper
