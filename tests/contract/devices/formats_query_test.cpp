// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How a camera is asked for its formats, and how a query that hangs is ended.
#include "encoding_host.h"
#include "formats_fixture.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

class AFormatsQuery : public FormatsTest {
 protected:
  Lines commandsWithProcess(const std::string &output) {
    host.journal.clear();
    host.commands.prints(queryProcessCommand(2), output);
    query();
    return host.journal.commands();
  }
};

TEST_F(AFormatsQuery, AsksTheHostThenTheCameraThenForALeftOverQuery) {
  read(Listing().format("MJPG").text());
  EXPECT_THAT(host.journal.commands(),
              ElementsAre(kProcessorCommand, packageQuery("Halvane", "Install_Path"),
                          "/usr/bin/v4l2-ctl -d /dev/video2 --list-formats-ext",
                          "/bin/ps | /bin/grep \"v4l2-ctl\" | /bin/grep \"/dev/video2\" | /bin/grep -v grep | "
                          "/bin/awk '{print $1}'"));
}

TEST_F(AFormatsQuery, IsClosedLast) {
  commandsWithProcess("4711\n");
  EXPECT_EQ(host.journal.lines().back(), "pclose " + listingCommand(2));
}

TEST_F(AFormatsQuery, ThatCannotStartFailsWithAClearedFlagOnly) {
  host.commands.cannotStart(listingCommand(2));
  EXPECT_EQ(query(), -1);
  EXPECT_EQ(over60, 0);
  EXPECT_TRUE(isUntouched(0));
  EXPECT_THAT(host.journal.commands(), Not(Contains(queryProcessCommand(2))));
}

TEST_F(AFormatsQuery, ThatPrintsNothingFindsNoFormat) {
  EXPECT_EQ(read(""), 0);
  EXPECT_TRUE(isUntouched(0));
}

TEST_F(AFormatsQuery, NeedsNoProcessorFile) {
  host.commands.does(kProcessorCommand, [] {});
  host.files.remove("/tmp/vl_cpu.info");
  EXPECT_EQ(read(Listing().format("MJPG").text()), 1);
}

TEST_F(AFormatsQuery, GivesTheSameAnswerOnAnyProcessor) {
  for (const char *vendor : {"", "GenuineIntel", "AuthenticAMD"}) {
    host.processor(vendor);
    EXPECT_EQ(read(Listing().format("MJPG").format("YUYV").text()), 1) << vendor;
  }
}

TEST_F(AFormatsQuery, ThatHangsIsKilled) {
  EXPECT_EQ(commandsWithProcess("4711\n").back(), "kill 4711 &");
  EXPECT_EQ(commandsWithProcess("1\n").back(), "kill 1 &");
}

TEST_F(AFormatsQuery, ThatHangsIsKilledHardWhereTheCameraNeedsIt) {
  host.camera(2, "1-1").ids("0603", "8612");
  EXPECT_EQ(commandsWithProcess("4711\n").back(), "kill -9 4711 &");
}

TEST_F(AFormatsQuery, IsKilledByItsFirstProcessOnly) {
  const Lines commands = commandsWithProcess("4711\n4712\n");
  EXPECT_EQ(commands.back(), "kill 4711 &");
  EXPECT_THAT(commands, Not(Contains("kill 4712 &")));
}

TEST_F(AFormatsQuery, ThatHangsIsKilledAfterAListingThatStoppedEarlyToo) {
  host.camera(2, "1-1").listing(Listing().format("MJPG").size(1, 1).rate("5.000").rate("5.000").text());
  EXPECT_EQ(commandsWithProcess("4711\n").back(), "kill 4711 &");
}

TEST_F(AFormatsQuery, IsNotKilledWithoutAPositiveProcessNumber) {
  for (const char *output : {"", "\n", "0\n", "-1\n", "PID\n", "; reboot\n"}) {
    const Lines commands = commandsWithProcess(output);
    EXPECT_THAT(commands, Not(Contains(StartsWith("kill")))) << output;
    EXPECT_EQ(commands.back(), queryProcessCommand(2)) << output;
  }
}

TEST_F(AFormatsQuery, IsNotKilledWhenTheProcessListCannotStart) {
  host.commands.cannotStart(queryProcessCommand(2));
  query();
  EXPECT_EQ(host.journal.commands().back(), queryProcessCommand(2));
}

TEST_F(AFormatsQuery, WithoutAPlaceForTheAnswerFailsAndAsksNothing) {
  EXPECT_EQ(mn_get_usbchn_fmts(2, nullptr, &over60), -1);
  EXPECT_EQ(mn_get_usbchn_fmts(2, table.data(), nullptr), -1);
  EXPECT_EQ(over60, 7);
  EXPECT_THAT(host.journal.lines(), testing::IsEmpty());
}

TEST_F(AFormatsQuery, NamesAnyNode) {
  for (const int node : {-2147483647 - 1, -1, 0, 2147483647}) {
    host.journal.clear();
    EXPECT_EQ(mn_get_usbchn_fmts(node, table.data(), &over60), 0);
    EXPECT_EQ(host.journal.commands().back(), queryProcessCommand(node));
  }
}

class AHardKill : public ContractTest {
 protected:
  int neededBy(const std::string &walk) {
    host.commands.prints(walkCommand(2), walk);
    return vl_force_kill_v4l2_ctl(2);
  }
};

const std::string kVendorLine = "    ATTRS{idVendor}==\"0603\"\n";
const std::string kProductLine = "    ATTRS{idProduct}==\"8612\"\n";
const std::string kOtherVendor = "    ATTRS{idVendor}==\"1d6b\"\n";
const std::string kOtherProduct = "    ATTRS{idProduct}==\"0002\"\n";

TEST_F(AHardKill, IsNeededByOneModelInEitherOrder) {
  EXPECT_EQ(neededBy(kVendorLine + kProductLine), 1);
  EXPECT_EQ(neededBy(kProductLine + kVendorLine), 1);
  EXPECT_EQ(host.journal.commands().front(), "/sbin/udevadm info --name=/dev/video2 --attribute-walk");
}

TEST_F(AHardKill, IsNotNeededByOthers) {
  EXPECT_EQ(neededBy(kVendorLine + kOtherProduct), 0);
  EXPECT_EQ(neededBy(kOtherVendor + kProductLine), 0);
  EXPECT_EQ(neededBy("    ATTRS{idVendor}==\"06030\"\n" + kProductLine), 0);
}

TEST_F(AHardKill, IsNeededByAParentOfThatModelToo) {
  EXPECT_EQ(neededBy(kOtherVendor + kOtherProduct + "  looking at parent device '/devices/usb1':\n" + kProductLine +
                     kVendorLine),
            1);
}

TEST_F(AHardKill, ForgetsBothPartsOfAPair) {
  EXPECT_EQ(neededBy(kVendorLine + kOtherProduct + kProductLine), 0);
  EXPECT_EQ(neededBy(kVendorLine + kOtherProduct + kProductLine + kOtherVendor + kVendorLine), 0);
}

TEST_F(AHardKill, TakesTheLaterOfTwoVendorsWithoutAProductBetween) {
  EXPECT_EQ(neededBy(kOtherVendor + kVendorLine + kProductLine), 1);
  EXPECT_EQ(neededBy(kVendorLine + kOtherVendor + kProductLine), 0);
}

TEST_F(AHardKill, IsNotNeededByHalfAPair) {
  EXPECT_EQ(neededBy(kVendorLine), 0);
  EXPECT_EQ(neededBy(""), 0);
  EXPECT_EQ(neededBy("    ATTRS{idVendor}=\"0603\"\n" + kProductLine), 0);
}

TEST_F(AHardKill, IsNotNeededWhenTheCommandCannotStart) {
  host.commands.cannotStart(walkCommand(2));
  EXPECT_EQ(vl_force_kill_v4l2_ctl(2), 0);
}

}  // namespace
}  // namespace contract
