// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/fields.h"

#include <gtest/gtest.h>

#include "json_of.h"

namespace {

using usbdevctl::FieldRows;
using usbdevctl::Fields;
using usbdevctl::forPeople;
using usbdevctl::forPrograms;
using usbdevctl::headed;
using usbdevctl::listJson;
using usbdevctl::numberField;
using usbdevctl::Style;
using usbdevctl::switchField;
using usbdevctl::tableText;
using usbdevctl::textField;
using usbdevctl::wordField;

Fields camera(std::optional<int> node, const std::string &name) {
  return Fields().add(numberField("video_node", node)).add(textField("name", name));
}

TEST(ARecord, IsALineAFieldForPeople) { EXPECT_EQ(camera(4, "Cam").text(false), "video node  4\nname        Cam\n"); }

TEST(ARecord, HasOneObjectForPrograms) {
  EXPECT_EQ(jsonOf(camera(4, "Cam\033")), "{\"schema\":1,\"video_node\":4,\"name\":\"Cam\\u001b\"}\n");
}

TEST(ARecord, ShowsNoneToPeopleAndNullToProgramsForAMissingValue) {
  const Fields record = Fields().add(numberField("node", std::nullopt)).add(switchField("overlay", std::nullopt));
  EXPECT_EQ(record.text(false), "node        none\noverlay     none\n");
  EXPECT_EQ(jsonOf(record), "{\"schema\":1,\"node\":null,\"overlay\":null}\n");
}

TEST(ARecord, MakesRoomForALongName) {
  const Fields record = Fields().add(switchField("a_longer_name", true)).add(switchField("b", false));
  EXPECT_EQ(record.text(false), "a longer name  on\nb              off\n");
}

TEST(ARecord, ColoursValues) {
  EXPECT_EQ(Fields().add(wordField("state", "ready", Style::good)).text(true), "state       \033[32mready\033[0m\n");
}

TEST(AField, MayBeForPeopleOrForProgramsOnly) {
  const Fields record = Fields().add(forPeople("both", {"1 Door"})).add(forPrograms("number", 1));
  EXPECT_EQ(record.text(false), "both        1 Door\n");
  EXPECT_EQ(jsonOf(record), "{\"schema\":1,\"number\":1}\n");
}

TEST(AList, IsATableWithAHeadingForEachShownField) {
  FieldRows rows;
  rows.push_back(camera(10, "Cam\n"));
  rows.push_back(camera(std::nullopt, ""));
  EXPECT_EQ(tableText(rows, false), "VIDEO NODE  NAME\n        10  Cam\\x0a\n         -  -\n");
  EXPECT_EQ(listJson(rows).line(), "[{\"video_node\":10,\"name\":\"Cam\\n\"},{\"video_node\":null,\"name\":\"\"}]\n");
}

TEST(AList, MayHaveAnotherHeadingThanItsMember) {
  const FieldRows rows = {Fields().add(headed("video", numberField("video_node", 1)))};
  EXPECT_EQ(tableText(rows, false), "VIDEO\n    1\n");
}

TEST(AnEmptyList, IsNoTextAndAnEmptyArray) {
  EXPECT_EQ(tableText({}, false), "");
  EXPECT_EQ(listJson({}).line(), "[]\n");
}

}  // namespace
