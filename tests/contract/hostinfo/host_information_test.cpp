// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the pages show about the host and its packages.
#include <cstring>
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kHostFile[] = "/etc/config/Tundrel.conf";

class TheHostsWebPort : public ContractTest {
 protected:
  int portIn(const std::string &file) {
    host.files.write(kHostFile, file);
    return vl_get_nas_HTTPport(&port);
  }

  int port = -7;
};

TEST_F(TheHostsWebPort, IsReadFromTheHostsSettings) {
  EXPECT_EQ(portIn("[System]\nWeb Access Port = 8080\n[NTP]\n"), 0);
  EXPECT_EQ(port, 8080);
  EXPECT_THAT(host.journal.lines(), ElementsAre(std::string("fopen ") + kHostFile, std::string("fclose ") + kHostFile));
}

TEST_F(TheHostsWebPort, BeyondTheRangeOfAnIntIsCutToIt) {
  const std::pair<const char *, int> numbers[] = {
      {"2147483646", 2147483646},       {"2147483647", 2147483647},
      {"2147483648", 2147483647},       {"99999999999999999999999", 2147483647},
      {"-2147483647", -2147483647},     {"-2147483648", -2147483647 - 1},
      {"-2147483649", -2147483647 - 1}, {"-99999999999999999999999", -2147483647 - 1}};
  for (const auto &[text, value] : numbers) {
    EXPECT_EQ(portIn(std::string("Web Access Port = ") + text + "\n"), 0);
    EXPECT_EQ(port, value) << text;
  }
}

TEST_F(TheHostsWebPort, IsFoundInAnySectionBeforeTheNtpSection) {
  EXPECT_EQ(portIn("[A]\nb = c\n[D]\nWeb Access Port = \"81\"\nWeb Access Port = 82\n"), 0);
  EXPECT_EQ(port, 81);
}

TEST_F(TheHostsWebPort, IsTheNumberThatItsValueBeginsWith) {
  EXPECT_EQ(portIn("Web Access Port = 80x\n"), 0);
  EXPECT_EQ(port, 80);
  EXPECT_EQ(portIn("Web Access Port = none\n"), 0);
  EXPECT_EQ(port, 0);
}

TEST_F(TheHostsWebPort, AfterTheNtpSectionIsNeverFound) {
  allowLeftOpen(kHostFile);
  EXPECT_EQ(portIn("[NTP]\nWeb Access Port = 8080\n"), -1);
  EXPECT_EQ(port, -7);
}

TEST_F(TheHostsWebPort, AfterABlankLineIsNotFound) {
  allowLeftOpen(kHostFile);
  EXPECT_EQ(portIn("[System]\n\nWeb Access Port = 8080\n"), -1);
  EXPECT_EQ(port, -7);
}

TEST_F(TheHostsWebPort, ThatIsMissingSucceedsAndLeavesTheOutput) {
  EXPECT_EQ(portIn("[System]\nVersion = 5\nWeb Access Port 2 = 1\n"), 0);
  EXPECT_EQ(port, -7);
}

TEST_F(TheHostsWebPort, InALineWithABracketIsSkipped) {
  EXPECT_EQ(portIn("Web Access Port = [80]\nother = [1]\n"), 0);
  EXPECT_EQ(port, -7);
}

TEST_F(TheHostsWebPort, AfterALineThatNamesTheNtpSectionAnywhereIsNotFound) {
  allowLeftOpen(kHostFile);
  EXPECT_EQ(portIn("Note = see [NTP] below\nWeb Access Port = 80\n"), -1);
  EXPECT_EQ(port, -7);
}

// Lines are read in pieces of 255 characters, of which the second one here has no equals sign.
TEST_F(TheHostsWebPort, AfterALongLineIsNotFound) {
  allowLeftOpen(kHostFile);
  EXPECT_EQ(portIn("a = " + std::string(252, 'b') + "\nWeb Access Port = 80\n"), -1);
  EXPECT_EQ(port, -7);
}

TEST_F(TheHostsWebPort, AfterALineOf254CharactersIsFound) {
  EXPECT_EQ(portIn("a = " + std::string(250, 'b') + "\nWeb Access Port = 80\n"), 0);
  EXPECT_EQ(port, 80);
}

TEST_F(TheHostsWebPort, WithoutASettingsFileFails) {
  EXPECT_EQ(vl_get_nas_HTTPport(&port), -1);
  EXPECT_EQ(port, -7);
}

class TheHostsVersion : public ContractTest {
 protected:
  int versionIn(const std::string &file) {
    host.files.write(kHostFile, file);
    const int result = vl_get_nas_version(version);
    return result;
  }

  char version[256] = "before";
};

TEST_F(TheHostsVersion, IsReadTrimmed) {
  EXPECT_EQ(versionIn("[System]\nWeb Access Port = 80\nVersion = 5.1.0 \n"), 0);
  EXPECT_STREQ(version, "5.1.0");
}

TEST_F(TheHostsVersion, OfALongLineIsGivenWhole) {
  EXPECT_EQ(versionIn("Version=" + std::string(246, 'v') + "\n"), 0);
  EXPECT_EQ(version, std::string(246, 'v'));
}

TEST_F(TheHostsVersion, ThatIsMissingSucceedsAndLeavesTheOutput) {
  EXPECT_EQ(versionIn("[System]\nversion = 5\n"), 0);
  EXPECT_STREQ(version, "before");
}

TEST_F(TheHostsVersion, AfterABlankLineIsNotFound) {
  allowLeftOpen(kHostFile);
  EXPECT_EQ(versionIn("\nVersion = 5\n"), -1);
  EXPECT_STREQ(version, "before");
}

TEST_F(TheHostsVersion, IsRefusedWithoutAPlaceForIt) {
  EXPECT_EQ(vl_get_nas_version(nullptr), -1);
  EXPECT_EQ(vl_get_nas_HTTPport(nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

std::string registryCommand(const std::string &key, const std::string &package = "Halvane") {
  return "/sbin/readcfg " + package + " " + key + " -f /etc/config/bndl.conf";
}

class AnInstalledPackage : public ContractTest {
 protected:
  AnInstalledPackage() {
    strcpy(info.version, "before");
    strcpy(info.build, "before");
    strcpy(info.install_path, "before");
    info.enabled = 7;
  }
  void answers(const std::string &key, const std::string &output) {
    host.commands.prints(registryCommand(key), output);
  }
  int query(const std::string &package = "Halvane") { return vl_get_bndl_info(package.c_str(), &info); }

  BndlInfo info{};
};

TEST_F(AnInstalledPackage, IsReportedWithAllFields) {
  answers("Version", "2.1.0\n");
  answers("Build", "20240305\n");
  answers("Install_Path", "/share/Halvane\n");
  answers("Enable", "TRUE\n");
  EXPECT_EQ(query(), 0);
  EXPECT_STREQ(info.version, "2.1.0");
  EXPECT_STREQ(info.build, "20240305");
  EXPECT_STREQ(info.install_path, "/share/Halvane");
  EXPECT_EQ(info.enabled, 1);
}

TEST_F(AnInstalledPackage, IsAskedForKeyByKey) {
  query();
  EXPECT_THAT(host.journal.commands(), ElementsAre(registryCommand("Version"), registryCommand("Build"),
                                                   registryCommand("Install_Path"), registryCommand("Enable")));
}

TEST_F(AnInstalledPackage, WithoutAnswersKeepsItsTextsAndIsNotEnabled) {
  EXPECT_EQ(query(), 0);
  EXPECT_STREQ(info.version, "before");
  EXPECT_STREQ(info.build, "before");
  EXPECT_STREQ(info.install_path, "before");
  EXPECT_EQ(info.enabled, 0);
}

TEST_F(AnInstalledPackage, WhoseQueryCannotStartKeepsThatText) {
  host.commands.cannotStart(registryCommand("Version"));
  answers("Build", "7\n");
  EXPECT_EQ(query(), 0);
  EXPECT_STREQ(info.version, "before");
  EXPECT_STREQ(info.build, "7");
}

TEST_F(AnInstalledPackage, WithAnEmptyAnswerHasAnEmptyText) {
  answers("Version", "\nsecond\n");
  query();
  EXPECT_STREQ(info.version, "");
}

TEST_F(AnInstalledPackage, HasItsTextsCutToTheirFields) {
  for (const char *key : {"Version", "Build", "Install_Path"}) answers(key, std::string(200, 'x') + "\n");
  query();
  EXPECT_EQ(info.version, std::string(63, 'x'));
  EXPECT_EQ(info.build, std::string(63, 'x'));
  EXPECT_EQ(info.install_path, std::string(126, 'x'));
}

class ANotQuiteTrueAnswer : public AnInstalledPackage, public testing::WithParamInterface<const char *> {};

TEST_P(ANotQuiteTrueAnswer, LeavesThePackageDisabled) {
  answers("Enable", GetParam());
  query();
  EXPECT_EQ(info.enabled, 0);
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, ANotQuiteTrueAnswer,
                         testing::Values("true\n", "TRUE \n", " TRUE\n", "TRUER\n", "FALSE\n", "\n", "TRUE\r\n"));

TEST_F(AnInstalledPackage, IsEnabledByAnAnswerWithoutALineFeedToo) {
  answers("Enable", "TRUE");
  query();
  EXPECT_EQ(info.enabled, 1);
}

class AHostilePackageName : public AnInstalledPackage, public testing::WithParamInterface<const char *> {};

TEST_P(AHostilePackageName, IsNotAskedFor) {
  EXPECT_EQ(query(GetParam()), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
  EXPECT_STREQ(info.version, "before");
  EXPECT_EQ(info.enabled, 0);
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, AHostilePackageName,
                         testing::Values("a|b", "a&b", "a;b", "a<b", "a>b", "a(b", "a)b", "a$b", "a\\b", "a\"b", "a'b",
                                         "a*b", "a?b", "a[b", "a]b", "a{b", "a}b", "a#b", "a~b", "a`b", "-a", "a\tb",
                                         "a b", "a\nb", "a\rb"));

TEST_F(AnInstalledPackage, OfANameTooLongForACommandIsNotAskedFor) {
  EXPECT_EQ(query(std::string(300, 'p')), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AnInstalledPackage, IsRefusedWithoutAPlaceForIt) {
  EXPECT_EQ(vl_get_bndl_info(nullptr, &info), 0);
  EXPECT_EQ(vl_get_bndl_info("Halvane", nullptr), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
  EXPECT_EQ(info.enabled, 7);
}

}  // namespace
}  // namespace contract
