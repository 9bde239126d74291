// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which text from outside may go into a command line. A real shell judges: a text that counts as safe reaches the
// command as it is.
#include "core/shell_text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace usbdev {
namespace {

struct Place {
  const char *name;
  bool (*is_safe)(const char *);
  const char *before;
  const char *after;
};

/// "x" with the byte at its start, inside and at its end.
std::vector<std::string> textsWith(char c) {
  return {std::string(1, c) + "x", std::string("x") + c + "x", std::string("x") + c};
}

/// Every safe text with one byte of any value, each as one line.
std::string safeTexts(const Place &place) {
  std::string all;
  for (int byte = 1; byte < 256; ++byte) {
    for (const std::string &text : textsWith(static_cast<char>(byte))) {
      if (place.is_safe(text.c_str())) all += text + "\n";
    }
  }
  return all;
}

/// The same lines as a shell command prints them, to which each text was one argument.
std::string printed(const Place &place, const std::string &texts) {
  std::string script = "set -f\n";
  for (size_t start = 0; start < texts.size(); start = texts.find('\n', start) + 1) {
    const std::string text = texts.substr(start, texts.find('\n', start) - start);
    script += std::string("printf '%s\\n' ") + place.before + text + place.after + "\n";
  }
  FILE *shell = popen(script.c_str(), "r");
  std::string output;
  for (int c = fgetc(shell); c != EOF; c = fgetc(shell)) output += static_cast<char>(c);
  EXPECT_EQ(pclose(shell), 0);
  return output;
}

/// The characters that may not stand inside.
std::string refused(bool (*is_safe)(const char *)) {
  std::string all;
  for (int byte = 1; byte < 256; ++byte) {
    const std::string text = textsWith(static_cast<char>(byte))[1];
    if (!is_safe(text.c_str())) all += static_cast<char>(byte);
  }
  return all;
}

class ASafeText : public testing::TestWithParam<Place> {};

TEST_P(ASafeText, IsReadByAShellAsNothingButItself) {
  const std::string texts = safeTexts(GetParam());
  EXPECT_EQ(printed(GetParam(), texts), texts);
}

INSTANTIATE_TEST_SUITE_P(In, ASafeText,
                         testing::Values(Place{"DoubleQuotes", isSafeInDoubleQuotes, "\"", "\""},
                                         Place{"SingleQuotes", isSafeInSingleQuotes, "'", "'"},
                                         Place{"ACommandLine", isSafeWord, "", ""}),
                         [](const auto &place) { return place.param.name; });

TEST(DoubleQuotes, RefuseWhatStillHasAMeaningInThem) { EXPECT_EQ(refused(isSafeInDoubleQuotes), "\n\r\"$\\`"); }

TEST(SingleQuotes, RefuseTheirOwnEndAndLineEnds) { EXPECT_EQ(refused(isSafeInSingleQuotes), "\n\r'"); }

TEST(AWord, MayContainNothingSpecialToAShell) { EXPECT_EQ(refused(isSafeWord), "\t\n\r \"#$&'()*;<>?[\\]`{|}~"); }

TEST(Words, MayContainBlanksToo) { EXPECT_EQ(refused(areSafeWords), "\t\n\r\"#$&'()*;<>?[\\]`{|}~"); }

TEST(AWord, MayNotLookLikeAnOption) {
  EXPECT_FALSE(isSafeWord("-rf"));
  EXPECT_FALSE(areSafeWords("-rf x"));
  EXPECT_TRUE(isSafeWord("x-rf"));
}

}  // namespace
}  // namespace usbdev
