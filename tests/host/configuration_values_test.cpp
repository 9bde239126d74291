#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

#include "configuration.h"
#include "private_host.h"

namespace {

const std::string kFile = std::string(kWorkFolder) + "/usbdev.conf";

std::string storedAndReadAgain(const std::string &value) {
  Configuration writer(kWrite, kFile);
  EXPECT_EQ(writer.setText("ch0", "devname", value), xmlcfg::kDone);
  EXPECT_EQ(writer.close(), xmlcfg::kDone);
  return Configuration(kRead, kFile).text("ch0", "devname", "missing");
}

class AConfiguration : public testing::Test {
 protected:
  void SetUp() override { writeFile(kFile, "<velmora/>"); }
};

TEST_F(AConfiguration, ReadsDefaultsWhereAPathIsMissing) {
  Configuration config(kRead, kFile);
  EXPECT_EQ(config.number("ch7", "exists", -5), -5);
  EXPECT_EQ(config.text("ch7", "video", "none", "cap"), "none");
}

TEST_F(AConfiguration, ReadsItsLayoutOfElements) {
  writeFile(kFile, "<velmora><ch3><exists>1</exists><video><cap>0 1</cap></video></ch3></velmora>");
  Configuration config(kRead, kFile);
  EXPECT_EQ(config.number("ch3", "exists"), 1);
  EXPECT_EQ(config.text("ch3", "video", "", "cap"), "0 1");
}

TEST_F(AConfiguration, WritesItsLayoutOfElements) {
  Configuration writer(kWrite, kFile);
  writer.setNumber("ch3", "exists", 1);
  writer.setText("ch3", "video", "0 1", "cap");
  writer.close();
  EXPECT_EQ(readFile(kFile),
            "<?xml version=\"1.0\"?>\n"
            "<velmora>\n"
            "  <ch3>\n"
            "    <exists>1</exists>\n"
            "    <video>\n"
            "      <cap>0 1</cap>\n"
            "    </video>\n"
            "  </ch3>\n"
            "</velmora>\n");
}

TEST_F(AConfiguration, KeepsKeysAndSubKeysOfOneNameApart) {
  Configuration writer(kWrite, kFile);
  writer.setText("ch0", "name", "of the key");
  writer.setText("ch0", "video", "of the sub-key", "name");
  EXPECT_EQ(writer.text("ch0", "name"), "of the key");
  EXPECT_EQ(writer.text("ch0", "video", "", "name"), "of the sub-key");
}

TEST_F(AConfiguration, ReplacesAValue) {
  storedAndReadAgain("first");
  EXPECT_EQ(storedAndReadAgain("second"), "second");
  EXPECT_EQ(readFile(kFile).find("first"), std::string::npos);
}

TEST_F(AConfiguration, ReadsAnEmptyTextAsEmptyAndNotAsTheDefault) { EXPECT_EQ(storedAndReadAgain(""), ""); }

TEST_F(AConfiguration, KeepsOrdinaryTextReadable) {
  const std::string text = "Caméra \"HD\" it's 100% 日本";
  EXPECT_EQ(storedAndReadAgain(text), text);
  EXPECT_NE(readFile(kFile).find(">" + text + "<"), std::string::npos);
}

TEST_F(AConfiguration, BringsBackEveryByte) {
  std::string bytes;
  for (int byte = 1; byte <= UCHAR_MAX; ++byte) bytes.push_back(static_cast<char>(byte));
  EXPECT_EQ(storedAndReadAgain(bytes), bytes);
}

TEST_F(AConfiguration, BringsBackTextThatXmlOrItsEscapesWouldChange) {
  for (const char *text : {" both ends ", "   ", "\n", "\r\n a\tb\r", "a<b>&amp;]]>", "<!--", "C:\\x41\\n\\", "\\x",
                           "\xC0\x80", "\xED\xA0\x80", "\xEF\xBF\xBF", "\xF5\x80\x80\x80", "half \xE2\x82"})
    EXPECT_EQ(storedAndReadAgain(text), text);
}

TEST_F(AConfiguration, StoresOnlyWellFormedUtf8) {
  storedAndReadAgain("\xFF\xC3\xA9");
  EXPECT_NE(readFile(kFile).find(">\\xff\xC3\xA9<"), std::string::npos);
}

TEST_F(AConfiguration, BringsBackALongText) {
  const std::string text(50000, 'x');
  EXPECT_EQ(storedAndReadAgain(text), text);
}

TEST_F(AConfiguration, FillsABufferWithTheFirstBytesOfALongerText) {
  storedAndReadAgain("abcdef");
  char buffer[] = "########";
  xmlcfg_get_str(Configuration(kRead, kFile).handle(), "", buffer, 4, "velmora", "ch0", "devname", nullptr);
  EXPECT_STREQ(buffer, "abcd####");
}

TEST_F(AConfiguration, EndsATextThatLeavesRoomForIt) {
  storedAndReadAgain("abc");
  char buffer[] = "########";
  xmlcfg_get_str(Configuration(kRead, kFile).handle(), "", buffer, 4, "velmora", "ch0", "devname", nullptr);
  EXPECT_EQ(std::string(buffer, sizeof buffer), std::string("abc\0####\0", 9));
}

TEST_F(AConfiguration, CutsALongDefaultToo) {
  char buffer[] = "########";
  xmlcfg_get_str(Configuration(kRead, kFile).handle(), "abcdef", buffer, 4, "velmora", "ch0", "devname", nullptr);
  EXPECT_STREQ(buffer, "abcd####");
}

TEST_F(AConfiguration, BringsBackTheOutermostIntegers) {
  for (int value : {INT_MIN, -1, 0, 999, INT_MAX}) {
    Configuration writer(kWrite, kFile);
    writer.setNumber("ch0", "profile", value);
    writer.close();
    EXPECT_EQ(Configuration(kRead, kFile).number("ch0", "profile", 7), value);
  }
}

TEST_F(AConfiguration, ReadsWhatIsNotADecimalIntegerAsTheDefault) {
  for (const char *garbage : {"", "x", "1x", "0x10", "+1", "1 ", "1.0", "2147483648", "--1"}) {
    storedAndReadAgain(garbage);
    EXPECT_EQ(Configuration(kRead, kFile).number("ch0", "devname", 77), 77) << garbage;
  }
}

TEST_F(AConfiguration, ReadsAnIntegerOfUpTo64Digits) {
  for (const auto &[zeros, expected] : {std::pair(62, 7), std::pair(63, 7), std::pair(64, -1)}) {
    storedAndReadAgain(std::string(static_cast<std::size_t>(zeros), '0') + "7");
    EXPECT_EQ(Configuration(kRead, kFile).number("ch0", "devname", -1), expected) << zeros;
  }
}

TEST_F(AConfiguration, RefusesToSetOnAHandleForReading) {
  Configuration reader(kRead, kFile);
  EXPECT_EQ(reader.setNumber("ch0", "exists", 1), xmlcfg::kReadOnly);
  EXPECT_EQ(reader.setText("ch0", "devname", "x"), xmlcfg::kReadOnly);
  EXPECT_EQ(reader.number("ch0", "exists", -1), -1);
  reader.close();
  EXPECT_EQ(readFile(kFile), "<velmora/>");
}

TEST_F(AConfiguration, RefusesNamesThatXmlCannotCarry) {
  Configuration writer(kWrite, kFile);
  for (const char *name : {"", "a b", "<a>", "1st", "a/b"}) {
    EXPECT_EQ(writer.setText(name, "key", "x"), xmlcfg::kBadArgument) << name;
    EXPECT_EQ(writer.setText("ch0", name, "x"), xmlcfg::kBadArgument) << name;
    EXPECT_EQ(writer.setText("ch0", "key", "x", name), xmlcfg::kBadArgument) << name;
  }
}

TEST_F(AConfiguration, RefusesAnotherRoot) {
  Configuration writer(kWrite, kFile);
  EXPECT_EQ(xmlcfg_set_int(writer.handle(), 1, "other", "ch0", "exists", nullptr), xmlcfg::kBadArgument);
}

TEST_F(AConfiguration, AnswersNullPointersWithFailureOrTheDefault) {
  Configuration writer(kWrite, kFile);
  EXPECT_EQ(xmlcfg_set_str(writer.handle(), nullptr, "velmora", "ch0", "key", nullptr), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_set_str(nullptr, "x", "velmora", "ch0", "key", nullptr), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_get_int(nullptr, 5, "velmora", "ch0", "key", nullptr), 5);
  EXPECT_EQ(xmlcfg_get_int(writer.handle(), 5, "velmora", nullptr, "key", nullptr), 5);
  EXPECT_EQ(xmlcfg_close(nullptr, 0), xmlcfg::kBadArgument);
}

}  // namespace
