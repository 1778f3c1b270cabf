// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <valgrind/callgrind.h>

#include <string>

namespace pallimo::benchmarks {

/// A piece of work whose instructions are counted.
struct CountedWork {
  const char* name;    ///< as in limits.txt
  int times = 20;      ///< how often it is done while they are counted
  int unitsATime = 1;  ///< how many units it does each time; the count is of one
};

/// Does `work` a few times to warm up, then so often that the count of one is steady. Callgrind
/// counts what happens within `work` alone, not within `prepare`, which precedes each time; it
/// writes a file whose trigger is the name and the number of units. Outside Callgrind nothing is
/// counted.
template <typename Prepare, typename Work>
void count(const CountedWork& counted, Prepare prepare, Work work) {
  constexpr int kWarmUps = 4;
  for (int i = 0; i < kWarmUps; ++i) {
    prepare();
    work();
  }
  CALLGRIND_START_INSTRUMENTATION;
  for (int i = 0; i < counted.times; ++i) {
    prepare();
    CALLGRIND_TOGGLE_COLLECT;
    work();
    CALLGRIND_TOGGLE_COLLECT;
  }
  const std::string trigger =
      std::string(counted.name) + ' ' + std::to_string(counted.times * counted.unitsATime);
  CALLGRIND_DUMP_STATS_AT(trigger.c_str());
  CALLGRIND_STOP_INSTRUMENTATION;
}

template <typename Work>
void count(const CountedWork& counted, Work work) {
  count(
      counted, [] {}, work);
}

// The works, file by file.
void countSamples();
void countLog();
void countServices();
void countPainting();

}  // namespace pallimo::benchmarks
