// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// An application whose own functions happen to bear the library's names. What the library does inside stays as it is:
// each case calls an exported function that does the same work as another one, which the application defines too.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <cstring>

extern "C" {

char *trim(char *text) { return text; }

int strip(char *, char *out) {
  memcpy(out, "mine", sizeof "mine");
  return 4;
}

int get_bndl_info(const char *, const char *, char *) { return 0; }

void error(const char *) { _exit(3); }

// Leaves the socket unconnected, so that nothing can be sent.
int connect(int, const sockaddr *, socklen_t) { return 0; }

}  // extern "C"

namespace {

TEST(AnApplicationWithFunctionsOfTheSameNames, DoesNotChangeHowTheLibraryTrims) {
  char text[] = "abc \n";
  EXPECT_EQ(process_json_string(text, sizeof text), 1);
  EXPECT_STREQ(text, "abc");
}

TEST(AnApplicationWithFunctionsOfTheSameNames, DoesNotChangeHowTheLibraryMakesHashes) {
  char hash[33] = "";
  generate_hash(hash);
  EXPECT_EQ(strlen(hash), 32U);
}

TEST(AnApplicationWithFunctionsOfTheSameNames, DoesNotChangeWhichPackageNamesTheLibraryRefuses) {
  char path[128];
  EXPECT_EQ(get_bndl_install_path("$(reboot)", path), -1);
}

TEST(AnApplicationWithFunctionsOfTheSameNames, DoesNotChangeHowTheLibraryEndsOnABrokenConnection) {
  NasServer server{};
  strcpy(server.host, "127.0.0.1");
  server.port = 80;
  char reply[16];
  EXPECT_EXIT(connect_host(&server, reply, sizeof reply, 1, 0), testing::ExitedWithCode(0), "ERROR writing to socket");
}

}  // namespace
