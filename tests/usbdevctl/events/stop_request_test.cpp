// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/stop_request.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

using usbdevctl::StopRequest;

class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe(ends_), 0); }
  ~Pipe() {
    close(ends_[0]);
    close(ends_[1]);
  }
  Pipe(const Pipe &) = delete;
  Pipe &operator=(const Pipe &) = delete;

  int reader() const { return ends_[0]; }
  void fill() const { EXPECT_EQ(write(ends_[1], "x", 1), 1); }

 private:
  int ends_[2] = {-1, -1};
};

TEST(AWaitingCommand, WakesWhenItsDescriptorCanBeRead) {
  const StopRequest stop;
  const Pipe pipe;
  pipe.fill();
  EXPECT_EQ(stop.wait(pipe.reader(), std::nullopt), StopRequest::Event::readable);
}

TEST(AWaitingCommand, WakesWhenTheTimeIsUp) {
  const StopRequest stop;
  const Pipe pipe;
  EXPECT_EQ(stop.wait(pipe.reader(), 1), StopRequest::Event::timed_out);
  EXPECT_EQ(stop.wait(-1, 1), StopRequest::Event::timed_out);
}

TEST(ASignalToStop, IsAnsweredBeforeAnythingElse) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const StopRequest stop;
    const Pipe pipe;
    pipe.fill();
    ASSERT_EQ(raise(signal), 0);
    EXPECT_EQ(stop.wait(pipe.reader(), std::nullopt), StopRequest::Event::stopped);
  }
}

TEST(ASignalToStop, ReachesTheProgramAgainAfterwards) {
  { const StopRequest stop; }
  EXPECT_EXIT(raise(SIGTERM), testing::KilledBySignal(SIGTERM), "");
}

}  // namespace
