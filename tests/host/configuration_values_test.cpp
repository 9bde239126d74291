// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

#include "configuration.h"
#include "private_host.h"

namespace {

const std::string kValuesFile = std::string(kWorkFolder) + "/usbdev.conf";

std::string storedAndReadAgain(const std::string &value) {
  Configuration writer(kWrite, kValuesFile);
  EXPECT_EQ(writer.setText("ch0", "devname", value), xmlcfg::kDone);
  EXPECT_EQ(writer.close(), xmlcfg::kDone);
  return Configuration(kRead, kValuesFile).text("ch0", "devname", "missing");
}

/// What the file contains for the value, between the tags of its element.
std::string storedFor(const std::string &value) {
  EXPECT_EQ(storedAndReadAgain(value), value);
  const std::string file = readFile(kValuesFile);
  const std::size_t start = file.find("<devname>") + 9;
  return file.substr(start, file.find("</devname>") - start);
}

std::string escaped(const std::string &bytes) {
  std::string text;
  for (const char byte : bytes) {
    char escape[5];
    snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(byte));
    text += escape;
  }
  return text;
}

class AConfiguration : public testing::Test {
 protected:
  void SetUp() override { writeFile(kValuesFile, "<velmora/>"); }
};

TEST_F(AConfiguration, ReadsDefaultsWhereAPathIsMissing) {
  Configuration config(kRead, kValuesFile);
  EXPECT_EQ(config.number("ch7", "exists", -5), -5);
  EXPECT_EQ(config.text("ch7", "video", "none", "cap"), "none");
}

TEST_F(AConfiguration, ReadsItsLayoutOfElements) {
  writeFile(kValuesFile, "<velmora><ch3><exists>1</exists><video><cap>0 1</cap></video></ch3></velmora>");
  Configuration config(kRead, kValuesFile);
  EXPECT_EQ(config.number("ch3", "exists"), 1);
  EXPECT_EQ(config.text("ch3", "video", "", "cap"), "0 1");
}

TEST_F(AConfiguration, WritesItsLayoutOfElements) {
  Configuration writer(kWrite, kValuesFile);
  writer.setNumber("ch3", "exists", 1);
  writer.setText("ch3", "video", "0 1", "cap");
  writer.close();
  EXPECT_EQ(readFile(kValuesFile),
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
  Configuration writer(kWrite, kValuesFile);
  writer.setText("ch0", "name", "of the key");
  writer.setText("ch0", "video", "of the sub-key", "name");
  EXPECT_EQ(writer.text("ch0", "name"), "of the key");
  EXPECT_EQ(writer.text("ch0", "video", "", "name"), "of the sub-key");
}

TEST_F(AConfiguration, ReplacesAValue) {
  storedAndReadAgain("first");
  EXPECT_EQ(storedAndReadAgain("second"), "second");
  EXPECT_EQ(readFile(kValuesFile).find("first"), std::string::npos);
}

TEST_F(AConfiguration, ReadsAnEmptyTextAsEmptyAndNotAsTheDefault) { EXPECT_EQ(storedAndReadAgain(""), ""); }

TEST_F(AConfiguration, KeepsOrdinaryTextReadable) {
  const std::string text = "Caméra \"HD\" it's 100% 日本";
  EXPECT_EQ(storedAndReadAgain(text), text);
  EXPECT_NE(readFile(kValuesFile).find(">" + text + "<"), std::string::npos);
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

TEST_F(AConfiguration, StoresTheCharactersOfUtf8AsTheyAre) {
  for (const char *character :
       {"!", "~", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xE0\xBF\xBF", "\xE1\x80\x80", "\xEC\xBF\xBF",
        "\xED\x80\x80", "\xED\x9F\xBF", "\xEE\x80\x80", "\xEF\xBE\xBF", "\xEF\xBF\xBD", "\xF0\x90\x80\x80",
        "\xF0\xBF\xBF\xBF", "\xF1\x80\x80\x80", "\xF3\xBF\xBF\xBF", "\xF4\x80\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_EQ(storedFor(character), character);
    EXPECT_EQ(storedFor(std::string("a") + character + "b"), std::string("a") + character + "b");
  }
}

TEST_F(AConfiguration, EscapesEveryByteOfWhatIsNotUtf8) {
  for (const char *bytes : {"\x80",
                            "\x80\x80\x80\x80",
                            "\xBF",
                            "\xC0",
                            "\xC1\xBF",
                            "\xC1\xBF\xBF\xBF",
                            "\xC2",
                            "\xC2\xC0",
                            "\xDF\xC0",
                            "\xE0\x9F\xBF",
                            "\xE1\x80",
                            "\xE1\x80\xC0",
                            "\xE1\xC0\x80",
                            "\xED\xA0\x80",
                            "\xEF\xBF\xBE",
                            "\xEF\xBF\xBF",
                            "\xF0\x80\x80\x80",
                            "\xF0\x8F\xBF\xBF",
                            "\xF1\x80\x80",
                            "\xF1\xC0\x80\x80",
                            "\xF1\x80\xC0\x80",
                            "\xF1\x80\x80\xC0",
                            "\xF4\x90\x80\x80",
                            "\xF5\x80\x80\x80",
                            "\xFF"}) {
    EXPECT_EQ(storedFor(bytes), escaped(bytes));
    EXPECT_EQ(storedFor(std::string("a") + bytes + "b"), "a" + escaped(bytes) + "b");
  }
  EXPECT_EQ(storedFor("\xC2\x7F"), escaped("\xC2\x7F"));
  EXPECT_EQ(storedFor("\xE1\x80~"), escaped("\xE1\x80") + "~");
  EXPECT_EQ(storedFor("\xE1\x7F\x80"), escaped("\xE1\x7F\x80"));
  EXPECT_EQ(storedFor("\xF1\x7F\x80\x80"), escaped("\xF1\x7F\x80\x80"));
}

TEST_F(AConfiguration, EscapesWhatFollowsACharacterOfUtf8) {
  for (const char *character : {"\xC2\x80", "\xE1\x80\x80", "\xF1\x80\x80\x80"})
    EXPECT_EQ(storedFor(std::string(character) + "\x01"), character + escaped("\x01"));
}

TEST_F(AConfiguration, EscapesControlCharactersBackslashesAndOuterBlanks) {
  for (const char *byte : {"\x01", "\x1F", "\x7F", "\\"}) EXPECT_EQ(storedFor(byte), escaped(byte));
  EXPECT_EQ(storedFor(" "), escaped(" "));
  EXPECT_EQ(storedFor("  a b  "), escaped(" ") + " a b " + escaped(" "));
}

TEST_F(AConfiguration, ReadsABackslashThatBeginsNoEscapeAsItself) {
  for (const char *text : {"\\", "\\x", "\\x4", "\\xg1", "\\x1g", "\\X41", "x41", "0x41", "\\\\"}) {
    writeFile(kValuesFile, std::string("<velmora><ch0><devname>") + text + "</devname></ch0></velmora>");
    EXPECT_EQ(Configuration(kRead, kValuesFile).text("ch0", "devname"), text);
  }
  writeFile(kValuesFile, "<velmora><ch0><devname>\\x41\\x4a!\\x7e</devname></ch0></velmora>");
  EXPECT_EQ(Configuration(kRead, kValuesFile).text("ch0", "devname"), "AJ!~");
}

TEST_F(AConfiguration, ReadsTextInCdata) {
  writeFile(kValuesFile, "<velmora><ch0><devname>a<![CDATA[<b>]]>c</devname></ch0></velmora>");
  EXPECT_EQ(Configuration(kRead, kValuesFile).text("ch0", "devname"), "a<b>c");
}

TEST_F(AConfiguration, BringsBackALongText) {
  const std::string text(50000, 'x');
  EXPECT_EQ(storedAndReadAgain(text), text);
}

TEST_F(AConfiguration, FillsABufferWithTheFirstBytesOfALongerText) {
  storedAndReadAgain("abcdef");
  char buffer[] = "########";
  xmlcfg_get_str(Configuration(kRead, kValuesFile).handle(), "", buffer, 4, "velmora", "ch0", "devname", nullptr);
  EXPECT_STREQ(buffer, "abcd####");
}

TEST_F(AConfiguration, EndsATextThatLeavesRoomForIt) {
  storedAndReadAgain("abc");
  char buffer[] = "########";
  xmlcfg_get_str(Configuration(kRead, kValuesFile).handle(), "", buffer, 4, "velmora", "ch0", "devname", nullptr);
  EXPECT_EQ(std::string(buffer, sizeof buffer), std::string("abc\0####\0", 9));
}

TEST_F(AConfiguration, CutsALongDefaultToo) {
  char buffer[] = "########";
  xmlcfg_get_str(Configuration(kRead, kValuesFile).handle(), "abcdef", buffer, 4, "velmora", "ch0", "devname", nullptr);
  EXPECT_STREQ(buffer, "abcd####");
}

TEST_F(AConfiguration, ReadsATextOnlyIntoABufferWithRoom) {
  Configuration reader(kRead, kValuesFile);
  char buffer[] = "########";
  EXPECT_EQ(xmlcfg_get_str(reader.handle(), "ab", nullptr, 8, "velmora", "ch0", "key", nullptr), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_get_str(reader.handle(), "ab", buffer, 0, "velmora", "ch0", "key", nullptr), xmlcfg::kBadArgument);
  EXPECT_STREQ(buffer, "########");
  EXPECT_EQ(xmlcfg_get_str(reader.handle(), "ab", buffer, 1, "velmora", "ch0", "key", nullptr), xmlcfg::kDone);
  EXPECT_STREQ(buffer, "a#######");
  EXPECT_EQ(xmlcfg_get_str(reader.handle(), nullptr, buffer, 8, "velmora", "ch0", "key", nullptr), xmlcfg::kDone);
  EXPECT_STREQ(buffer, "");
}

TEST_F(AConfiguration, BringsBackTheOutermostIntegers) {
  for (int value : {INT_MIN, -1, 0, 999, INT_MAX}) {
    Configuration writer(kWrite, kValuesFile);
    writer.setNumber("ch0", "profile", value);
    writer.close();
    EXPECT_EQ(Configuration(kRead, kValuesFile).number("ch0", "profile", 7), value);
  }
}

TEST_F(AConfiguration, ReadsWhatIsNotADecimalIntegerAsTheDefault) {
  for (const char *garbage : {"", "x", "1x", "0x10", "+1", "1 ", "1.0", "2147483648", "--1"}) {
    storedAndReadAgain(garbage);
    EXPECT_EQ(Configuration(kRead, kValuesFile).number("ch0", "devname", 77), 77) << garbage;
  }
}

TEST_F(AConfiguration, ReadsAnIntegerOfUpTo64Digits) {
  for (const auto &[zeros, expected] : {std::pair(62, 7), std::pair(63, 7), std::pair(64, -1)}) {
    storedAndReadAgain(std::string(static_cast<std::size_t>(zeros), '0') + "7");
    EXPECT_EQ(Configuration(kRead, kValuesFile).number("ch0", "devname", -1), expected) << zeros;
  }
}

TEST_F(AConfiguration, RefusesToSetOnAHandleForReading) {
  Configuration reader(kRead, kValuesFile);
  EXPECT_EQ(reader.setNumber("ch0", "exists", 1), xmlcfg::kReadOnly);
  EXPECT_EQ(reader.setText("ch0", "devname", "x"), xmlcfg::kReadOnly);
  EXPECT_EQ(reader.number("ch0", "exists", -1), -1);
  reader.close();
  EXPECT_EQ(readFile(kValuesFile), "<velmora/>");
}

TEST_F(AConfiguration, RefusesNamesThatXmlCannotCarry) {
  Configuration writer(kWrite, kValuesFile);
  for (const char *name : {"", "a b", "<a>", "1st", "a/b"}) {
    EXPECT_EQ(writer.setText(name, "key", "x"), xmlcfg::kBadArgument) << name;
    EXPECT_EQ(writer.setText("ch0", name, "x"), xmlcfg::kBadArgument) << name;
    EXPECT_EQ(writer.setText("ch0", "key", "x", name), xmlcfg::kBadArgument) << name;
  }
}

TEST_F(AConfiguration, TakesNamesOfLettersDigitsDotsDashesAndUnderscores) {
  Configuration writer(kWrite, kValuesFile);
  for (const char *name : {"a", "z", "A", "Z", "_", "a0", "a9", "a-", "a.", "_azAZ"}) {
    EXPECT_EQ(writer.setText("ch0", name, name), xmlcfg::kDone) << name;
    EXPECT_EQ(writer.text("ch0", name), name);
  }
  for (const char *name : {"@", "[", "`", "{", "^", "0", "9", "-", ".", "a/", "a:", "a,", "a\x80"})
    EXPECT_EQ(writer.setText("ch0", name, "x"), xmlcfg::kBadArgument) << name;
}

TEST_F(AConfiguration, RefusesAnotherRoot) {
  Configuration writer(kWrite, kValuesFile);
  EXPECT_EQ(xmlcfg_set_int(writer.handle(), 1, "other", "ch0", "exists", nullptr), xmlcfg::kBadArgument);
}

TEST_F(AConfiguration, AnswersNullPointersWithFailureOrTheDefault) {
  Configuration writer(kWrite, kValuesFile);
  EXPECT_EQ(xmlcfg_set_str(writer.handle(), nullptr, "velmora", "ch0", "key", nullptr), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_set_str(nullptr, "x", "velmora", "ch0", "key", nullptr), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_get_int(nullptr, 5, "velmora", "ch0", "key", nullptr), 5);
  EXPECT_EQ(xmlcfg_get_int(writer.handle(), 5, "velmora", nullptr, "key", nullptr), 5);
  EXPECT_EQ(xmlcfg_get_int(writer.handle(), 5, nullptr, "ch0", "key", nullptr), 5);
  EXPECT_EQ(xmlcfg_get_int(writer.handle(), 5, "velmora", "ch0", nullptr, nullptr), 5);
  EXPECT_EQ(xmlcfg_set_int(writer.handle(), 1, nullptr, "ch0", "key", nullptr), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_set_int(writer.handle(), 1, "velmora", nullptr, "key", nullptr), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_set_int(writer.handle(), 1, "velmora", "ch0", nullptr, nullptr), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_close(nullptr, 0), xmlcfg::kBadArgument);
}

}  // namespace
