// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/posix/descriptor_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>
#include <utility>

namespace pallimo::adapters::posix {
namespace {

class DescriptorOutputTest : public testing::Test {
 protected:
  DescriptorOutputTest() : previous_(signal(SIGPIPE, SIG_IGN)) { EXPECT_EQ(pipe(ends_.data()), 0); }
  ~DescriptorOutputTest() override {
    closeReader();
    close(ends_[1]);
    signal(SIGPIPE, previous_);
  }

  int reader() const { return ends_[0]; }
  int writer() const { return ends_[1]; }
  void closeReader() {
    if (ends_[0] >= 0) close(std::exchange(ends_[0], -1));
  }

  std::string read(std::size_t size) const {
    std::string text(size, '\0');
    std::size_t got = 0;
    while (got < size) {
      const ssize_t count = ::read(ends_[0], text.data() + got, size - got);
      if (count <= 0) break;
      got += static_cast<std::size_t>(count);
    }
    text.resize(got);
    return text;
  }

 private:
  std::array<int, 2> ends_ = {-1, -1};
  void (*previous_)(int);
};

TEST_F(DescriptorOutputTest, TheReaderSeesTheTextAtOnce) {
  DescriptorOutput output(writer());
  EXPECT_EQ(output.write("one line\n"), ports::StandardOutput::State::open);
  EXPECT_EQ(read(9), "one line\n");
}

TEST_F(DescriptorOutputTest, ATextLargerThanThePipeIsWrittenWhole) {
  const std::string text(300'000, 'x');
  std::string got;
  std::thread reader([&] { got = read(text.size()); });
  DescriptorOutput output(writer());
  EXPECT_EQ(output.write(text), ports::StandardOutput::State::open);
  reader.join();
  EXPECT_EQ(got, text);
}

TEST_F(DescriptorOutputTest, WaitsForANonBlockingDescriptor) {
  ASSERT_EQ(fcntl(writer(), F_SETFL, O_NONBLOCK), 0);
  const std::string text(300'000, 'x');
  std::string got;
  std::thread reader([&] { got = read(text.size()); });
  DescriptorOutput output(writer());
  EXPECT_EQ(output.write(text), ports::StandardOutput::State::open);
  reader.join();
  EXPECT_EQ(got, text);
}

TEST_F(DescriptorOutputTest, AReaderThatIsGoneIsAClosedOutput) {
  closeReader();
  DescriptorOutput output(writer());
  EXPECT_EQ(output.write("one line\n"), ports::StandardOutput::State::closed);
}

TEST_F(DescriptorOutputTest, AnythingElseIsAFailureWithItsReason) {
  DescriptorOutput output(reader());
  EXPECT_EQ(output.write("one line\n"), ports::StandardOutput::State::failed);
  EXPECT_EQ(output.failure(), "Bad file descriptor");
}

}  // namespace
}  // namespace pallimo::adapters::posix
