// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>

#include "private_host.h"
#include "processes.h"

namespace {

/// Runs one of the host's commands; what it prints on standard error is not looked at.
Answer tool(const std::string &command) { return runCommand("PATH=" HOST_TOOLS ":$PATH " + command + " 2>/dev/null"); }

void expect(const std::string &command, const std::string &output, int status) {
  const Answer answer = tool(command);
  EXPECT_EQ(answer.output, output) << command;
  EXPECT_EQ(answer.status, status) << command;
}

class Readcfg : public testing::Test {
 protected:
  void SetUp() override {
    writeFile("/etc/config/Tundrel.conf",
              "# a comment\n[System]\nModel = TN 4\nWeb Access Port=8080\nEmpty =\n  Spaced \t=  a  b \r\n"
              "Formula = a=b\nnonsense\n\n[NTP]\nModel = of NTP\n");
    writeFile("/etc/config/bndl.conf", "[Halvane]\nInstall_Path = /opt/halvane\nEnable = TRUE");
  }
};

TEST_F(Readcfg, PrintsAValueOfTheHostsSettings) { expect("readcfg System Model", "TN 4\n", 0); }

TEST_F(Readcfg, LooksOnlyIntoTheSection) {
  expect("readcfg NTP Model", "of NTP\n", 0);
  expect("readcfg NTP 'Web Access Port'", "", 1);
}

TEST_F(Readcfg, TakesBlanksInsideKeysAndValuesButNotAroundThem) {
  expect("readcfg System 'Web Access Port'", "8080\n", 0);
  expect("readcfg System Spaced", "a  b\n", 0);
}

TEST_F(Readcfg, CutsALineAtItsFirstEqualsSign) { expect("readcfg System Formula", "a=b\n", 0); }

TEST_F(Readcfg, PrintsAnEmptyValueAsAnEmptyLine) { expect("readcfg System Empty -d default", "\n", 0); }

TEST_F(Readcfg, PrintsTheDefaultWhereTheValueIsMissing) {
  expect("readcfg System InnerWebAccessPort -d 58080", "58080\n", 0);
  expect("readcfg None Model -d 'no such'", "no such\n", 0);
  expect("readcfg System Model -d x -f /etc/config/none.conf", "x\n", 0);
}

TEST_F(Readcfg, PrintsNothingAndFailsWithoutADefault) {
  expect("readcfg System None", "", 1);
  expect("readcfg System Model -f /etc/config/none.conf", "", 1);
}

TEST_F(Readcfg, FailsWhereTheFileCannotBeReadWithADefaultToo) {
  makeFolder("/etc/config/loop");
  expect("readcfg System Model -d x -f /etc/config/loop", "", 3);
}

TEST_F(Readcfg, FailsWhereItsOutputCannotBeWritten) { expect("readcfg System Model >/dev/full", "", 3); }

TEST_F(Readcfg, ReadsAnotherFile) {
  expect("readcfg Halvane Install_Path -f /etc/config/bndl.conf", "/opt/halvane\n", 0);
  expect("readcfg Halvane Enable -f /etc/config/bndl.conf", "TRUE\n", 0);
}

TEST_F(Readcfg, IgnoresTheCaseOfSectionsWhenAsked) {
  expect("readcfg \"hALVANE\" \"Install_Path\" -c -d READCFG_FAILD -f /etc/config/bndl.conf", "/opt/halvane\n", 0);
  expect("readcfg hALVANE Install_Path -d READCFG_FAILD -f /etc/config/bndl.conf", "READCFG_FAILD\n", 0);
}

TEST_F(Readcfg, ComparesKeysExactly) { expect("readcfg System model -c -d missing", "missing\n", 0); }

TEST_F(Readcfg, RefusesAWrongUsage) {
  for (const char *arguments : {"", " System", " a b c", " -x a b", " a b -d"})
    expect(std::string("readcfg") + arguments, "", 2);
}

class GpuinfoApp : public testing::Test {
 protected:
  void SetUp() override {
    writeFile("/etc/config/gpuinfo.conf",
              "[card 0]\ndetails = integrated\nversion = 5\ndriver_installed = 1\n"
              "[card1]\ndetails = slot: 2\ndriver_installed = 0\n");
  }
};

TEST_F(GpuinfoApp, ListsNamesAndDetails) { expect("gpuinfo_app -l", "card 0: integrated\ncard1: slot: 2\n", 0); }

TEST_F(GpuinfoApp, PrintsTheDriverStateFirst) {
  expect("gpuinfo_app -s card1", "driver_installed=0\n", 0);
  expect("gpuinfo_app -s card 0", "driver_installed=1\nversion=5\n", 0);
}

TEST_F(GpuinfoApp, KnowsNoOtherName) { expect("gpuinfo_app -s card2", "", 1); }

TEST_F(GpuinfoApp, RefusesAWrongUsage) {
  for (const char *arguments : {"", " -s", " -x", " -l more", " card1"})
    expect(std::string("gpuinfo_app") + arguments, "", 2);
}

class AHostWithoutSettings : public testing::Test {
 protected:
  void SetUp() override { makeEmptyFolder("/etc/config"); }
};

TEST_F(AHostWithoutSettings, ListsNoGraphicsProcessors) { expect("gpuinfo_app -l", "", 0); }

class HwinfoApp : public testing::Test {
 protected:
  void SetUp() override { writeFile("/etc/config/usbports.conf", "1-1 3\n\n1-1.2\t4\n2-1 5"); }
};

TEST_F(HwinfoApp, PrintsThePortOfASlot) {
  expect("hwinfo_app --usb_get_port_id value='1-1'", "3\n", 0);
  expect("hwinfo_app --usb_get_port_id value='1-1.2'", "4\n", 0);
  expect("hwinfo_app --usb_get_port_id value='2-1'", "5\n", 0);
}

TEST_F(HwinfoApp, PrintsNothingForOtherSlots) {
  for (const char *slot : {"1-1.", "1", "", "*", "1-1 3"})
    expect(std::string("hwinfo_app --usb_get_port_id value='") + slot + "'", "", 1);
}

TEST_F(HwinfoApp, RefusesAWrongUsage) {
  for (const char *arguments : {"", " --usb_get_port_id", " --usb_get_port_id 1-1", " --other value=1-1"})
    expect(std::string("hwinfo_app") + arguments, "", 2);
}

TEST_F(AHostWithoutSettings, KnowsNoSlot) { expect("hwinfo_app --usb_get_port_id value='1-1'", "", 1); }

TEST(EveryHostTool, ExplainsItself) {
  for (const std::string name : {"readcfg", "gpuinfo_app", "hwinfo_app"}) {
    const Answer answer = tool(name + " --help");
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output.rfind("Usage: " + name, 0), 0U) << answer.output;
  }
}

}  // namespace
