// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/stream_console.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

namespace pallimo::adapters::common {
namespace {

std::string readAll(int descriptor) {
  std::string text;
  std::array<char, 4096> buffer;
  for (ssize_t count = 0; (count = read(descriptor, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

TEST(StreamConsole, WritesTheLineAndALineEnd) {
  std::array<int, 2> ends = {};
  ASSERT_EQ(pipe(ends.data()), 0);
  StreamConsole(ends[1]).writeLine("INSTALL HELPER");
  close(ends[1]);
  EXPECT_EQ(readAll(ends[0]), "INSTALL HELPER\n");
  close(ends[0]);
}

TEST(StreamConsole, LinesOfTwoThreadsNeverMix) {
  std::array<int, 2> ends = {};
  ASSERT_EQ(pipe(ends.data()), 0);
  StreamConsole console(ends[1]);
  const auto writeMany = [&](char letter) {
    for (int line = 0; line < 200; ++line) console.writeLine(std::string(99, letter));
  };
  std::thread a(writeMany, 'a');
  std::thread b(writeMany, 'b');
  std::string text;
  std::thread reader([&] { text = readAll(ends[0]); });
  a.join();
  b.join();
  close(ends[1]);
  reader.join();
  close(ends[0]);
  ASSERT_EQ(text.size(), 40'000u);
  for (std::size_t line = 0; line < 400; ++line) {
    const std::string one = text.substr(line * 100, 100);
    EXPECT_EQ(one.back(), '\n');
    EXPECT_EQ(one.find_first_not_of(one.front()), 99u) << one;
  }
}

TEST(StreamConsole, ALineThatCannotBeWrittenIsLostInSilence) {
  StreamConsole(-1).writeLine("nobody reads this");
}

}  // namespace
}  // namespace pallimo::adapters::common
