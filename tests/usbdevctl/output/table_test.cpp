// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/table.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::Align;
using usbdevctl::Style;
using usbdevctl::Table;

TEST(ATable, PutsColumnsTwoBlanksApartUnderTheirHeadings) {
  Table table({{"N", Align::right}, {"NAME"}, {"LAST"}});
  table.addRow({{"7"}, {"long name"}, {"x"}});
  table.addRow({{"10"}, {"b"}, {"y"}});
  EXPECT_EQ(table.text(false),
            " N  NAME       LAST\n"
            " 7  long name  x\n"
            "10  b          y\n");
}

TEST(ATable, AlignsByWhatATerminalShows) {
  Table table({{"NAME"}, {"X"}});
  table.addRow({{"摄像头"}, {"1"}});
  table.addRow({{"abcdef"}, {"2"}});
  EXPECT_EQ(table.text(false), "NAME    X\n摄像头  1\nabcdef  2\n");
}

TEST(ATable, LeavesMissingCellsEmptyAndNoBlanksAtLineEnds) {
  Table table({{"A"}, {"B"}});
  table.addRow({{"only"}});
  EXPECT_EQ(table.text(false), "A     B\nonly\n");
}

TEST(ATable, ColoursTheTextAndNotThePadding) {
  Table table({{"AB"}, {"C"}});
  table.addRow({{"g", Style::good}, {"p"}});
  EXPECT_EQ(table.text(true), "\033[1mAB\033[0m  \033[1mC\033[0m\n\033[32mg\033[0m   p\n");
}

class AWideTable : public testing::Test {
 protected:
  AWideTable() {
    table_.addRow({{"7"}, {"abcdefghij"}, {"abcdefgh"}});
    table_.addRow({{"10"}, {"摄像头摄像"}, {"x"}});
  }

  Table table_{{{"N", Align::right}, {"NAME", Align::left, true}, {"LINK", Align::left, true}}};
};

TEST_F(AWideTable, IsWholeWhereItFits) { EXPECT_EQ(table_.text(false, 24), table_.text(false)); }

TEST_F(AWideTable, CutsItsWidestColumnWithAnEllipsis) {
  EXPECT_EQ(table_.text(false, 23),
            " N  NAME       LINK\n"
            " 7  abcdefgh…  abcdefgh\n"
            "10  摄像头摄…  x\n");
}

TEST_F(AWideTable, CutsNoCharacterInTwo) {
  EXPECT_EQ(table_.text(false, 22),
            " N  NAME      LINK\n"
            " 7  abcdefg…  abcdefgh\n"
            "10  摄像头…   x\n");
}

TEST(AVeryWideTable, CutsHeadingsAndOtherTextsTooButNoNumber) {
  Table table{{{"CHANNEL", Align::right}, {"STATE"}, {"NAME", Align::left, true}}};
  table.addRow({{"1234567"}, {"unplugged"}, {"abcdefghij"}});
  table.addRow({{"8"}, {"free"}, {"-"}});
  EXPECT_EQ(table.text(false, 22),
            "CHANNEL  STATE    NAME\n"
            "1234567  unplug…  abc…\n"
            "      8  free     -\n");
}

TEST_F(AWideTable, StaysAsWideAsItsNumbersAndFourCharactersOfEachText) {
  EXPECT_EQ(table_.text(false, 1),
            " N  NAME  LINK\n"
            " 7  abc…  abc…\n"
            "10  摄…   x\n");
}

}  // namespace
