// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which devices the host's lists name.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kUnsupportedFile[] = "/etc/config/.usbnosupportlist.dat";

class ADeviceList : public ContractTest {
 protected:
  int unsupported(const std::string &content, const std::string &name) {
    return listed(kUnsupportedFile, content, name);
  }
  int other(const std::string &content, const std::string &name) {
    return listed("/etc/config/.other.dat", content, name);
  }

 private:
  int listed(const std::string &file, const std::string &content, const std::string &name) {
    host.files.write(file, content);
    return devlistcmp(name.c_str(), file.c_str());
  }
};

TEST_F(ADeviceList, OfUnsupportedOnesMatchesWholeNamesOnly) {
  EXPECT_EQ(unsupported("HD Webcam\n", "HD Webcam"), 1);
  EXPECT_EQ(unsupported("HD Webcam\n", "HD Webcam Pro"), 0);
  EXPECT_EQ(unsupported("HD Webcam Pro\n", "HD Webcam"), 0);
}

TEST_F(ADeviceList, OfAnotherKindMatchesPartsOfNames) {
  EXPECT_EQ(other("HD Webcam\n", "HD Webcam"), 1);
  EXPECT_EQ(other("HD Webcam\n", "My HD Webcam Pro"), 1);
  EXPECT_EQ(other("HD Webcam Pro\n", "HD Webcam"), 0);
}

TEST_F(ADeviceList, IsOfUnsupportedOnesByItsExactPathOnly) {
  const std::string path = "/etc/config//.usbnosupportlist.dat";
  host.files.write(path, "Webcam\n");
  EXPECT_EQ(devlistcmp("HD Webcam", path.c_str()), 1);
}

TEST_F(ADeviceList, WithoutANameOrAPathMatchesNothing) {
  EXPECT_EQ(devlistcmp(nullptr, kUnsupportedFile), 0);
  EXPECT_EQ(devlistcmp("", nullptr), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(ADeviceList, MatchesByAnyOfItsLines) {
  EXPECT_EQ(unsupported("A\nB\nC\n", "C"), 1);
  EXPECT_EQ(unsupported("A\nB\nC\n", "D"), 0);
}

TEST_F(ADeviceList, OfUnsupportedOnesMatchesAnEmptyNameByAnEmptyLine) {
  EXPECT_EQ(unsupported("\n", ""), 1);
  EXPECT_EQ(unsupported("\n", "HD Webcam"), 0);
}

TEST_F(ADeviceList, OfAnotherKindMatchesEveryNameByAnEmptyLine) { EXPECT_EQ(other("A\n\n", "HD Webcam"), 1); }

TEST_F(ADeviceList, ThatIsEmptyMatchesNothing) {
  EXPECT_EQ(other("", "HD Webcam"), 0);
  EXPECT_EQ(unsupported("", ""), 0);
}

TEST_F(ADeviceList, MayEndWithoutALineEnd) { EXPECT_EQ(unsupported("A\nHD Webcam", "HD Webcam"), 1); }

TEST_F(ADeviceList, IsComparedWithoutTrimming) {
  EXPECT_EQ(unsupported(" HD Webcam\n", "HD Webcam"), 0);
  EXPECT_EQ(unsupported("HD Webcam\r\n", "HD Webcam"), 0);
}

TEST_F(ADeviceList, ThatCannotBeOpenedMatchesNothing) {
  EXPECT_EQ(devlistcmp("HD Webcam", kUnsupportedFile), 0);
  host.files.makeUnreadable(kUnsupportedFile);
  EXPECT_EQ(devlistcmp("", kUnsupportedFile), 0);
}

TEST_F(ADeviceList, HoldsEntriesOf254CharactersWhole) {
  const std::string entry(254, 'n');
  EXPECT_EQ(unsupported(entry + "\n", entry), 1);
  EXPECT_EQ(other(entry + "\n", "HD Webcam"), 0);
}

TEST_F(ADeviceList, HoldsLongerEntriesInPieces) {
  EXPECT_EQ(unsupported(std::string(255, 'n') + "HD Webcam\n", "HD Webcam"), 1);
  EXPECT_EQ(other(std::string(255, 'n') + "\n", "HD Webcam"), 1);  // the left-over line end is an empty line
}

TEST_F(ADeviceList, OfBinaryContentMatchesNothing) {
  EXPECT_EQ(unsupported(std::string("\0\x01\xff\0HD Webcam\n", 15), "HD Webcam"), 0);
}

TEST_F(ADeviceList, IsClosedAfterAMatch) {
  unsupported("A\nB\n", "A");
  EXPECT_THAT(host.journal.lines(),
              ElementsAre(std::string("fopen ") + kUnsupportedFile, std::string("fclose ") + kUnsupportedFile));
}

}  // namespace
}  // namespace contract
