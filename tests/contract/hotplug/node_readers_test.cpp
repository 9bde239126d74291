// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// From an interface or a port to the kernel's node and the device's name.
#include <cstring>
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string cameraNodes(const std::string &interface) {
  return "/bin/ls /sys/bus/usb/drivers/uvcvideo/" + interface + "/video4linux | /bin/awk '{print $1}'";
}

std::string cardNodes(const std::string &interface) {
  return "/bin/ls /sys/bus/usb/drivers/snd-usb-audio/" + interface + "/sound | /bin/awk '{print $1}'";
}

std::string namePath(int node) { return "/sys/class/video4linux/video" + std::to_string(node) + "/name"; }

class AnInterface : public ContractTest {
 protected:
  int videoInfo(const std::string &interface) {
    char buffer[256] = "untouched";
    const int result = get_video_info(interface.c_str(), &node, buffer);
    name = buffer;
    return result;
  }

  int audioInfo(const std::string &interface) {
    char buffer[256] = "untouched";
    const int result = get_audio_info(interface.c_str(), &node, buffer);
    name = buffer;
    return result;
  }

  int node = -7;
  std::string name;
};

TEST_F(AnInterface, OfACameraHasItsNodeAndTrimmedName) {
  host.commands.prints(cameraNodes("3-1:1.0"), "video4\n");
  host.files.write(namePath(4), "  \"HD Webcam\" \n");
  EXPECT_EQ(videoInfo("3-1:1.0"), 0);
  EXPECT_EQ(node, 4);
  EXPECT_EQ(name, "HD Webcam");
}

TEST_F(AnInterface, IsAskedUntilItsNameIsRead) {
  host.commands.prints(cameraNodes("3-1:1.0"), "video4\n");
  host.files.write(namePath(4), "HD Webcam\n");
  videoInfo("3-1:1.0");
  EXPECT_THAT(host.journal.lines(), ElementsAre("popen " + cameraNodes("3-1:1.0"), "fopen " + namePath(4),
                                                "fclose " + namePath(4), "pclose " + cameraNodes("3-1:1.0")));
}

TEST_F(AnInterface, WithANodeAboveNineIsReadAsItsLastDigit) {
  host.commands.prints(cameraNodes("3-1:1.0"), "video12\n");
  host.files.write(namePath(2), "HD Webcam\n");
  EXPECT_EQ(videoInfo("3-1:1.0"), 0);
  EXPECT_EQ(node, 2);
  host.commands.prints(cardNodes("3-1:1.2"), "card10\n");
  EXPECT_EQ(audioInfo("3-1:1.2"), 0);
  EXPECT_EQ(node, 0);
}

TEST_F(AnInterface, WithANodeOfOneDigitHasThatNumber) {
  host.commands.prints(cameraNodes("3-1:1.0"), "7\n");
  host.files.write(namePath(7), "HD Webcam\n");
  EXPECT_EQ(videoInfo("3-1:1.0"), 0);
  EXPECT_EQ(node, 7);
}

TEST_F(AnInterface, WithTwoNodesHasTheFirst) {
  host.commands.prints(cameraNodes("3-1:1.0"), "video1\nvideo2\n");
  host.files.write(namePath(1), "HD Webcam\n");
  videoInfo("3-1:1.0");
  EXPECT_EQ(node, 1);
}

TEST_F(AnInterface, WithAnEmptyLineInPlaceOfANodeHasNode0) {
  host.commands.prints(cardNodes("3-1:1.0"), "\n");
  EXPECT_EQ(audioInfo("3-1:1.0"), 0);
  EXPECT_EQ(node, 0);
}

TEST_F(AnInterface, WithoutANodeLeavesTheOutputs) {
  EXPECT_EQ(videoInfo("3-1:1.1"), 0);
  EXPECT_EQ(audioInfo("3-1:1.1"), 0);
  EXPECT_EQ(node, -7);
  EXPECT_EQ(name, "untouched");
}

TEST_F(AnInterface, WhoseListCannotStartFails) {
  host.commands.cannotStart(cameraNodes("3-1:1.0"));
  host.commands.cannotStart(cardNodes("3-1:1.0"));
  EXPECT_EQ(videoInfo("3-1:1.0"), -1);
  EXPECT_EQ(audioInfo("3-1:1.0"), -1);
}

TEST_F(AnInterface, WithoutANameFileFailsWithAMessage) {
  host.commands.prints(cameraNodes("3-1:1.0"), "video4\n");
  OutputCapture output;
  EXPECT_EQ(videoInfo("3-1:1.0"), -1);
  EXPECT_EQ(output.text(), "open:[/sys/class/video4linux/video4/name] failed\n");
}

TEST_F(AnInterface, WithAnEmptyNameFileHasAnEmptyName) {
  host.commands.prints(cameraNodes("3-1:1.0"), "video4\n");
  host.files.write(namePath(4), "");
  EXPECT_EQ(videoInfo("3-1:1.0"), 0);
  EXPECT_EQ(name, "");
}

TEST_F(AnInterface, IsAskedForNothingWithoutAPlaceForTheAnswer) {
  char buffer[256] = "untouched";
  for (const auto get_info : {get_video_info, get_audio_info}) {
    EXPECT_EQ(get_info(nullptr, &node, buffer), -1);
    EXPECT_EQ(get_info("3-1:1.0", nullptr, buffer), -1);
    EXPECT_EQ(get_info("3-1:1.0", &node, nullptr), -1);
  }
  EXPECT_EQ(get_usb_vnode(nullptr), 0);
  EXPECT_EQ(get_usb_anode(nullptr), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AnInterface, OfANameThatMakesACommandOf383BytesIsAskedAndOfALongerOneIsNot) {
  const std::string fits = "3-1:" + std::string(383 - cameraNodes("3-1:").size(), '1');
  ASSERT_EQ(cameraNodes(fits).size(), 383U);
  host.commands.prints(cameraNodes(fits), "video4\n");
  host.files.write(namePath(4), "Camera\n");
  EXPECT_EQ(videoInfo(fits), 0);
  EXPECT_EQ(node, 4);
  host.journal.clear();
  EXPECT_EQ(videoInfo(fits + "1"), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AnInterface, NameOf300BytesIsCutAt255) {
  host.commands.prints(cameraNodes("3-1:1.0"), "video4\n");
  host.files.write(namePath(4), std::string(300, 'n') + "\n");
  videoInfo("3-1:1.0");
  EXPECT_EQ(name, std::string(255, 'n'));
}

TEST_F(AnInterface, OfACardHasTheNameThatTheHostReports) {
  host.commands.prints(cardNodes("3-1:1.2"), "card1\n");
  host.sound.card(1, 1, 1, 1, "USB Audio");
  EXPECT_EQ(audioInfo("3-1:1.2"), 0);
  EXPECT_EQ(node, 1);
  EXPECT_EQ(name, "USB Audio");
}

TEST_F(AnInterface, OfACardMayBeDescribedByALongerRecordOfTheHosts) {
  host.sound.fillRecordsOf(1024);
  host.sound.card(1, 1, 1, 1, "USB Audio");
  host.commands.prints(cardNodes("3-1:1.2"), "card1\n");
  EXPECT_EQ(audioInfo("3-1:1.2"), 0);
  EXPECT_EQ(name, "USB Audio");
}

TEST_F(AnInterface, OfACardThatTheHostDoesNotKnowHasOnlyItsNumber) {
  host.commands.prints(cardNodes("3-1:1.2"), "card1\n");
  EXPECT_EQ(audioInfo("3-1:1.2"), 0);
  EXPECT_EQ(node, 1);
  EXPECT_EQ(name, "untouched");
}

TEST_F(AnInterface, CardNameThatFillsItsFieldIsTerminated) {
  host.commands.prints(cardNodes("3-1:1.2"), "card1\n");
  host.sound.card(1, 1, 1, 1, std::string(256, 'c'));
  audioInfo("3-1:1.2");
  EXPECT_EQ(name, std::string(255, 'c'));
}

TEST_F(AnInterface, ThatCouldBeReadAsMoreThanAWordRunsNothing) {
  const std::string forbidden = "|&;<>()$\\\"'*?[]{}#~`\t \n\r";
  for (const char c : forbidden) {
    EXPECT_EQ(videoInfo(std::string("3-1") + c + "x:1.0"), 0);
    EXPECT_EQ(audioInfo(std::string("3-1") + c + "x:1.0"), 0);
  }
  videoInfo("-3:1.0");
  EXPECT_EQ(node, -7);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AnInterface, OfAPortWhoseNameIsTooLongRunsNothing) {
  const std::string longest = std::string(127, '3') + ":1.0";
  EXPECT_EQ(videoInfo("3" + longest), 0);
  EXPECT_EQ(audioInfo("3" + longest), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
  videoInfo(longest);
  audioInfo(longest);
  EXPECT_THAT(host.journal.commands(), ElementsAre(cameraNodes(longest), cardNodes(longest)));
}

TEST_F(AnInterface, WithANameThatFitsNoCommandFails) {
  const std::string endless = "3-1:" + std::string(1000, '1');
  EXPECT_EQ(videoInfo(endless), -1);
  EXPECT_EQ(audioInfo(endless), -1);
  EXPECT_EQ(node, -7);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

class APort : public ContractTest {
 protected:
  APort() {
    std::memset(&record, 0, sizeof record);
    record.vnode = record.anode = record.state = -1;
    std::strcpy(record.usbslot, "3-1");
  }

  _usbdev_update record;
};

TEST_F(APort, IsAskedOnInterfacesZeroAndTwo) {
  EXPECT_EQ(get_usb_vnode(&record), 0);
  EXPECT_EQ(get_usb_anode(&record), 0);
  EXPECT_THAT(host.journal.only({"popen"}),
              ElementsAre("popen " + cameraNodes("3-1\\:1.0"), "popen " + cameraNodes("3-1\\:1.2"),
                          "popen " + cardNodes("3-1\\:1.0"), "popen " + cardNodes("3-1\\:1.2")));
}

TEST_F(APort, ThatIsUnterminatedIsNotAskedFor) {
  std::memset(record.usbslot, '1', sizeof record.usbslot);
  EXPECT_EQ(get_usb_vnode(&record), 0);
  EXPECT_EQ(get_usb_anode(&record), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(APort, WithNothingOnThemLeavesTheRecord) {
  const _usbdev_update before = record;
  get_usb_vnode(&record);
  get_usb_anode(&record);
  EXPECT_EQ(std::memcmp(&before, &record, sizeof record), 0);
}

TEST_F(APort, WithACameraHasItsNodeStateAndName) {
  host.commands.prints(cameraNodes("3-1\\:1.0"), "video4\n");
  host.files.write(namePath(4), " HD Webcam \n");
  EXPECT_EQ(get_usb_vnode(&record), 0);
  EXPECT_EQ(record.vnode, 4);
  EXPECT_EQ(record.state, 1);
  EXPECT_STREQ(record.devname, " HD Webcam ") << "only the line feed goes";
}

TEST_F(APort, WithAnEmptyNameFileHasAnEmptyName) {
  host.commands.prints(cameraNodes("3-1\\:1.0"), "video4\n");
  host.files.write(namePath(4), "");
  std::strcpy(record.devname, "before");
  get_usb_vnode(&record);
  EXPECT_EQ(record.vnode, 4);
  EXPECT_STREQ(record.devname, "");
}

TEST_F(APort, WithBothInterfacesHasTheSecond) {
  host.commands.prints(cameraNodes("3-1\\:1.0"), "video4\n");
  host.commands.prints(cameraNodes("3-1\\:1.2"), "video6\n");
  host.files.write(namePath(4), "first\n");
  host.files.write(namePath(6), "second\n");
  get_usb_vnode(&record);
  EXPECT_EQ(record.vnode, 6);
  EXPECT_STREQ(record.devname, "second");
}

TEST_F(APort, WithACardHasItsNumberStateAndName) {
  host.commands.prints(cardNodes("3-1\\:1.2"), "card2\n");
  host.sound.card(2, 1, 1, 1, "USB Audio");
  EXPECT_EQ(get_usb_anode(&record), 0);
  EXPECT_EQ(record.anode, 2);
  EXPECT_EQ(record.state, 1);
  EXPECT_STREQ(record.devname, "USB Audio");
}

TEST_F(APort, WithoutANameFileAsksTheNextInterfaceAndLeavesTheCommandOpen) {
  host.commands.prints(cameraNodes("3-1\\:1.0"), "video4\n");
  host.commands.prints(cameraNodes("3-1\\:1.2"), "video6\n");
  host.files.write(namePath(6), "second\n");
  allowLeftOpen(cameraNodes("3-1\\:1.0"));
  OutputCapture output;
  EXPECT_EQ(get_usb_vnode(&record), 0);
  EXPECT_EQ(output.text(), "open:[/sys/class/video4linux/video4/name] failed\n");
  EXPECT_EQ(record.vnode, 6);
}

TEST_F(APort, WhoseListsCannotStartPrintsAMessageForEach) {
  for (const char *interface : {"3-1\\:1.0", "3-1\\:1.2"}) {
    host.commands.cannotStart(cameraNodes(interface));
    host.commands.cannotStart(cardNodes(interface));
  }
  testing::internal::CaptureStdout();
  EXPECT_EQ(get_usb_vnode(&record), 0);
  EXPECT_EQ(get_usb_anode(&record), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "scan failure ...scan failure ...scan failure ...scan failure ...");
}

TEST_F(APort, WithShellCharactersOrWithoutAnEndRunsNothing) {
  std::strcpy(record.usbslot, "3-1;x");
  get_usb_vnode(&record);
  std::memset(record.usbslot, '1', sizeof record.usbslot);
  get_usb_anode(&record);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
