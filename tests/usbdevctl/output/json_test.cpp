// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/json.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::Json;

TEST(AJsonDocument, BeginsWithItsSchemaAndKeepsTheOrderOfItsMembers) {
  const Json document = Json::document().set("b", 1).set("a", Json::object().set("c", "text"));
  EXPECT_EQ(document.line(), "{\"schema\":1,\"b\":1,\"a\":{\"c\":\"text\"}}\n");
}

TEST(AJsonDocument, IsIndentedForASingleAnswer) {
  EXPECT_EQ(Json::document().set("a", true).text(), "{\n  \"schema\": 1,\n  \"a\": true\n}\n");
}

TEST(AJsonDocument, StaysJsonWhateverBytesATextContains) {
  EXPECT_EQ(Json(std::string("a\xff\"\n\033")).line(), "\"a\xef\xbf\xbd\\\"\\n\\u001b\"\n");
}

TEST(AJsonArray, HoldsItsElementsInOrder) {
  Json array = Json::array();
  EXPECT_EQ(array.line(), "[]\n");
  array.append(std::int64_t{1} << 40).append(Json()).append(false);
  EXPECT_EQ(array.line(), "[1099511627776,null,false]\n");
}

TEST(AJsonNumber, IsAsItWasWritten) {
  EXPECT_EQ(Json::number("29.97").line(), "29.97\n");
  EXPECT_EQ(Json::number("30").line(), "30\n");
}

TEST(AMissingValue, IsNull) {
  EXPECT_EQ(Json(std::optional<int>()).line(), "null\n");
  EXPECT_EQ(Json(std::optional<int>(3)).line(), "3\n");
}

}  // namespace
