// An application whose own functions happen to bear the library's names. Its definitions win in the application; calls
// inside the library still reach the library's own.
#include <gtest/gtest.h>
#include <usbdev/usbdev.h>

#include <cstring>

namespace {

int calls_of_the_application = 0;

}  // namespace

extern "C" {

char *trim(char *text) {
  ++calls_of_the_application;
  return text;
}

int strip(char *, char *out) {
  ++calls_of_the_application;
  memcpy(out, "mine", sizeof "mine");
  return 4;
}

int trsProfiletoPlugCh(int, int *) {
  ++calls_of_the_application;
  return 0;
}

}  // extern "C"

namespace {

TEST(AnApplicationWithFunctionsOfTheSameNames, ReachesItsOwn) {
  char text[] = " abc ";
  calls_of_the_application = 0;
  EXPECT_EQ(trim(text), text);
  EXPECT_EQ(calls_of_the_application, 1);
}

TEST(AnApplicationWithFunctionsOfTheSameNames, DoesNotChangeHowTheLibraryTrims) {
  char line[] = " key = value \n";
  char left[16];
  char right[16];
  calls_of_the_application = 0;
  EXPECT_EQ(get_two_params(line, "=", left, right), 1);
  EXPECT_STREQ(left, "key");
  EXPECT_STREQ(right, "value");
  EXPECT_EQ(calls_of_the_application, 0);
}

TEST(AnApplicationWithFunctionsOfTheSameNames, DoesNotChangeHowTheLibraryMakesHashes) {
  char hash[33] = "";
  calls_of_the_application = 0;
  generate_hash(hash);
  EXPECT_EQ(strlen(hash), 32U);
  EXPECT_EQ(calls_of_the_application, 0);
}

TEST(AnApplicationWithFunctionsOfTheSameNames, DoesNotChangeHowTheLibraryMapsProfiles) {
  char name[256] = "";
  calls_of_the_application = 0;
  EXPECT_EQ(vl_getDevName(4, name), -1);
  EXPECT_EQ(calls_of_the_application, 0);
}

}  // namespace
