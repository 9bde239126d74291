#include "output/json.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::Json;
using usbdevctl::jsonDocument;
using usbdevctl::jsonLine;
using usbdevctl::jsonOrNull;
using usbdevctl::jsonText;

TEST(AJsonDocument, BeginsWithItsSchema) {
  Json document = jsonDocument();
  document["a"] = 1;
  EXPECT_EQ(jsonLine(document), "{\"schema\":1,\"a\":1}\n");
  EXPECT_EQ(jsonText(document), "{\n  \"schema\": 1,\n  \"a\": 1\n}\n");
}

TEST(AJsonDocument, StaysJsonWhateverBytesATextHolds) {
  Json document = jsonDocument();
  document["name"] = "a\xff\"\n\033";
  EXPECT_EQ(jsonLine(document), "{\"schema\":1,\"name\":\"a\xef\xbf\xbd\\\"\\n\\u001b\"}\n");
}

TEST(AMissingValue, IsNull) {
  EXPECT_EQ(jsonOrNull(std::optional<int>()), Json(nullptr));
  EXPECT_EQ(jsonOrNull(std::optional<int>(3)), Json(3));
}

}  // namespace
