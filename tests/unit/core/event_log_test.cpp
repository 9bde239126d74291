// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How long a line of the event log may be. Compiled in, as the longest line of any exported function is shorter.
#include "core/event_log.h"

#include <gtest/gtest.h>
#include <platform/vllog.h>

#include <string>

namespace {

std::string logged;

std::string lineOf(int bytes) {
  usbdev::logEvent(usbdev::EventLevel::information, "%s", std::string(static_cast<size_t>(bytes), 'x').c_str());
  return logged;
}

TEST(ALineOfTheEventLog, OfUpTo1023BytesIsWhole) {
  EXPECT_EQ(lineOf(1022), std::string(1022, 'x'));
  EXPECT_EQ(lineOf(1023), std::string(1023, 'x'));
}

TEST(ALineOfTheEventLog, OfMoreIsCutAt1023Bytes) {
  EXPECT_EQ(lineOf(1024), std::string(1023, 'x'));
  EXPECT_EQ(lineOf(5000), std::string(1023, 'x'));
}

}  // namespace

extern "C" int vq_sql_set_log(int, const char *text, int) {
  logged = text;
  return 0;
}
