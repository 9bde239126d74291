// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/kernel_files.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "machine/fake_machine.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using usbdevctl::KernelFiles;

class TheKernelsFiles : public testing::Test {
 protected:
  FakeMachine machine_;
  KernelFiles files_{machine_.root()};
};

TEST_F(TheKernelsFiles, AreReadToTheEndOfTheFirstLineWithoutBlanks) {
  machine_.write("/a", "  12 \nmore\n");
  EXPECT_EQ(files_.line("/a"), "12");
  EXPECT_EQ(files_.number("/a"), 12);
  EXPECT_EQ(files_.number("/a", 16), 0x12);
}

TEST_F(TheKernelsFiles, ThatAreMissingOrEmptyAreEmptyTexts) {
  machine_.write("/empty", "");
  machine_.write("/word", "word");
  EXPECT_EQ(files_.line("/empty"), "");
  EXPECT_EQ(files_.line("/missing"), "");
  EXPECT_EQ(files_.number("/word"), 0);
  EXPECT_THAT(files_.names("/missing"), IsEmpty());
}

TEST_F(TheKernelsFiles, AreNotReadWithoutEnd) {
  machine_.write("/long", std::string(1U << 20U, 'x'));
  EXPECT_EQ(files_.line("/long").size(), 256U);
  EXPECT_EQ(files_.content("/long").size(), 64U * 1024U);
}

TEST_F(TheKernelsFiles, ThatArePipesOrFoldersAreNotWaitedFor) {
  ASSERT_EQ(mkfifo((machine_.root() + "/pipe").c_str(), 0600), 0);
  machine_.makeFolder("/folder");
  EXPECT_EQ(files_.content("/pipe"), "");
  EXPECT_EQ(files_.content("/folder"), "");
}

TEST_F(TheKernelsFiles, AreListedInTheirOrder) {
  machine_.write("/list/b", "");
  machine_.write("/list/a", "");
  EXPECT_THAT(files_.names("/list"), ElementsAre("a", "b"));
}

}  // namespace
