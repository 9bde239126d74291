// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the library asks about the host: packages, host settings, and whether it may serve one channel only.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kHostFile[] = "/etc/config/Tundrel.conf";
constexpr char kPathCommand[] =
    "/sbin/readcfg \"Halvane\" \"Install_Path\" -c -d READCFG_FAILD -f /etc/config/bndl.conf";
constexpr char kEnableCommand[] = "/sbin/readcfg \"Halvane\" \"Enable\" -c -d READCFG_FAILD -f /etc/config/bndl.conf";

class APackage : public ContractTest {
 protected:
  int queryPath(const std::string &package = "Halvane") {
    value = std::string(128, '\0') + "###";
    const int result = get_bndl_install_path(package.c_str(), value.data());
    EXPECT_EQ(value.substr(128), "###");
    value = value.c_str();
    return result;
  }
  int pathPrintedAs(const std::string &output) {
    host.commands.prints(kPathCommand, output);
    return queryPath();
  }

  std::string value;
};

TEST_F(APackage, IsAskedForItsPathWithOneCommandThatIsClosed) {
  EXPECT_EQ(pathPrintedAs("/share/Halvane\n"), 0);
  EXPECT_EQ(value, "/share/Halvane");
  EXPECT_THAT(host.journal.lines(),
              ElementsAre(std::string("popen ") + kPathCommand, std::string("pclose ") + kPathCommand));
}

TEST_F(APackage, IsAskedForAnyField) {
  host.commands.prints(kEnableCommand, "TRUE\n");
  char answer[128] = "";
  EXPECT_EQ(get_bndl_info("Halvane", "Enable", answer), 0);
  EXPECT_STREQ(answer, "TRUE");
  EXPECT_THAT(host.journal.commands(), ElementsAre(kEnableCommand));
}

TEST_F(APackage, ThatIsNotInstalledHasNoPath) {
  EXPECT_EQ(pathPrintedAs("READCFG_FAILD\n"), -1);
  EXPECT_THAT(host.commands.leftOpen(), IsEmpty());
}

TEST_F(APackage, WhoseAnswerBeginsWithTheSentinelHasNoPath) { EXPECT_EQ(pathPrintedAs("READCFG_FAILDURE\n"), -1); }

TEST_F(APackage, WhoseAnswerIsOnlyPartOfTheSentinelHasThatPath) {
  EXPECT_EQ(pathPrintedAs("READCFG_FAIL\n"), 0);
  EXPECT_EQ(value, "READCFG_FAIL");
}

TEST_F(APackage, WhoseAnswerHoldsTheSentinelLaterHasThatPath) {
  EXPECT_EQ(pathPrintedAs("/READCFG_FAILD\n"), 0);
  EXPECT_EQ(value, "/READCFG_FAILD");
}

TEST_F(APackage, WithNoAnswerFails) { EXPECT_EQ(pathPrintedAs(""), -1); }

TEST_F(APackage, WithAnEmptyLineForAnAnswerSucceedsWithNothing) {
  EXPECT_EQ(pathPrintedAs("\n"), 0);
  EXPECT_EQ(value, "");
}

TEST_F(APackage, IsAnsweredByTheFirstLineOnly) {
  EXPECT_EQ(pathPrintedAs("/share/one\n/share/two\n"), 0);
  EXPECT_EQ(value, "/share/one");
}

TEST_F(APackage, FailsWhenTheCommandCannotStart) {
  host.commands.cannotStart(kPathCommand);
  EXPECT_EQ(queryPath(), -1);
}

TEST_F(APackage, GivesTheLongestLineThatIsReadWhole) {
  EXPECT_EQ(pathPrintedAs(std::string(126, 'p') + "\n"), 0);
  EXPECT_EQ(value, std::string(126, 'p'));
}

TEST_F(APackage, WhoseLineFillsTheBufferLosesItsLastCharacter) {
  EXPECT_EQ(pathPrintedAs(std::string(126, 'p') + "\n"), 0);
  EXPECT_EQ(value, std::string(126, 'p'));
  EXPECT_EQ(pathPrintedAs(std::string(127, 'p')), 0);
  EXPECT_EQ(value, std::string(126, 'p'));
  EXPECT_EQ(pathPrintedAs(std::string(500, 'p') + "\n"), 0);
  EXPECT_EQ(value, std::string(126, 'p'));
}

TEST_F(APackage, WhoseLineIsShorterLosesALineFeedAndNothingElse) {
  EXPECT_EQ(pathPrintedAs(std::string(125, 'p') + "\n"), 0);
  EXPECT_EQ(value, std::string(125, 'p'));
  EXPECT_EQ(pathPrintedAs(std::string(126, 'p')), 0);
  EXPECT_EQ(value, std::string(126, 'p'));
}

TEST_F(APackage, IsAskedForNothingWithoutANameAFieldOrAPlaceForTheAnswer) {
  char out[128] = "kept";
  EXPECT_EQ(get_bndl_install_path(nullptr, out), -1);
  EXPECT_EQ(get_bndl_install_path("Halvane", nullptr), -1);
  EXPECT_EQ(get_bndl_info(nullptr, "Enable", out), -1);
  EXPECT_EQ(get_bndl_info("Halvane", nullptr, out), -1);
  EXPECT_EQ(get_bndl_info("Halvane", "Enable", nullptr), -1);
  EXPECT_STREQ(out, "kept");
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(APackage, GivesBlanksAndQuotesOfTheAnswerAsTheyAre) {
  EXPECT_EQ(pathPrintedAs(" \"a b\" \n"), 0);
  EXPECT_EQ(value, " \"a b\" ");
}

// The command around a name has 76 characters of its own.
TEST_F(APackage, MayMakeACommandOf127Characters) {
  queryPath(std::string(51, 'p'));
  ASSERT_THAT(host.journal.commands(), SizeIs(1));
  EXPECT_THAT(host.journal.commands()[0], testing::EndsWith(" /etc/config/bndl.conf"));
  EXPECT_EQ(host.journal.commands()[0].size(), 127U);
}

TEST_F(APackage, HasItsCommandCutAt127Characters) {
  queryPath(std::string(52, 'p'));
  ASSERT_THAT(host.journal.commands(), SizeIs(1));
  EXPECT_THAT(host.journal.commands()[0], testing::EndsWith(" /etc/config/bndl.con"));
  EXPECT_EQ(host.journal.commands()[0].size(), 127U);
}

class AHostileName : public ContractTest, public testing::WithParamInterface<const char *> {};

TEST_P(AHostileName, OfAPackageRunsNoCommand) {
  char out[128] = "";
  EXPECT_EQ(get_bndl_install_path(GetParam(), out), -1);
  EXPECT_EQ(get_bndl_info(GetParam(), "Enable", out), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_P(AHostileName, OfAFieldRunsNoCommand) {
  char out[128] = "";
  EXPECT_EQ(get_bndl_info("Halvane", GetParam(), out), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(WithAnythingThatIsNotItselfInQuotes, AHostileName,
                         testing::Values("a$b", "$(reboot)", "a`b`", "a\\", "a\"b", "a\nb", "a\rb"));

class AHarmlessName : public ContractTest, public testing::WithParamInterface<const char *> {};

TEST_P(AHarmlessName, OfAPackageIsAskedFor) {
  host.package(GetParam(), "Install_Path", "/share/x");
  char out[128] = "";
  EXPECT_EQ(get_bndl_install_path(GetParam(), out), 0);
  EXPECT_STREQ(out, "/share/x");
}

INSTANTIATE_TEST_SUITE_P(ThatQuotesKeepTogether, AHarmlessName,
                         testing::Values("Two Words", "a;b", "a|b&c", "a'b", "-a", "a*?[b]{c}#~<>()", "\xc3\xa9"));

class AHostSetting : public ContractTest {
 protected:
  int query(const std::string &key) {
    value = std::string(32, '\0') + "###";
    const int result = get_nas_info(key.c_str(), value.data());
    EXPECT_EQ(value.substr(32), "###");
    value = value.c_str();
    return result;
  }
  int queryIn(const std::string &file, const std::string &key) {
    host.files.write(kHostFile, file);
    return query(key);
  }

  std::string value;
};

TEST_F(AHostSetting, IsReadTrimmed) {
  EXPECT_EQ(queryIn("[System]\nModel = \"K41\" \n", "Model"), 0);
  EXPECT_EQ(value, "K41");
  EXPECT_THAT(host.files.leftOpen(), IsEmpty());
}

TEST_F(AHostSetting, IsTheFirstOfItsName) {
  EXPECT_EQ(queryIn("Model = K41\nModel = K52\n", "Model"), 0);
  EXPECT_EQ(value, "K41");
}

TEST_F(AHostSetting, IsFoundByItsWholeName) {
  EXPECT_EQ(queryIn("Internal Model = K41\nModel Name = x\nmodel = y\nModel = K52\n", "Model"), 0);
  EXPECT_EQ(value, "K52");
}

TEST_F(AHostSetting, KeepsWhatFollowsASecondEqualsSign) {
  EXPECT_EQ(queryIn("Key = a=b\n", "Key"), 0);
  EXPECT_EQ(value, "a=b");
}

TEST_F(AHostSetting, ThatIsMissingSucceedsAndLeavesTheOutput) {
  host.files.write(kHostFile, "[System]\nOther = 1\n");
  char out[32] = "before";
  EXPECT_EQ(get_nas_info("Model", out), 0);
  EXPECT_STREQ(out, "before");
}

TEST_F(AHostSetting, OfAnEmptyFileIsMissing) { EXPECT_EQ(queryIn("", "Model"), 0); }

TEST_F(AHostSetting, IsNotReadWithoutAKeyOrAPlaceForTheValue) {
  host.files.write(kHostFile, "Model = K41\n");
  char out[32] = "kept";
  EXPECT_EQ(get_nas_info(nullptr, out), -1);
  EXPECT_EQ(get_nas_info("Model", nullptr), -1);
  EXPECT_STREQ(out, "kept");
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AHostSetting, OfNoFileFails) { EXPECT_EQ(query("Model"), -1); }

TEST_F(AHostSetting, OfAnUnreadableFileFails) {
  host.files.makeUnreadable(kHostFile);
  EXPECT_EQ(query("Model"), -1);
}

TEST_F(AHostSetting, InALineWithABracketIsSkipped) {
  EXPECT_EQ(queryIn("Model = [old]\nModel = K41\n", "Model"), 0);
  EXPECT_EQ(value, "K41");
}

TEST_F(AHostSetting, AfterTheNtpSectionIsNotFound) {
  allowLeftOpen(kHostFile);
  EXPECT_EQ(queryIn("[System]\nOther = 1\n[NTP]\nModel = K41\n", "Model"), -1);
  EXPECT_EQ(value, "");
}

TEST_F(AHostSetting, AfterALineThatMerelyHoldsTheNtpHeadIsNotFound) {
  allowLeftOpen(kHostFile);
  EXPECT_EQ(queryIn("Note = see [NTP] below\nModel = K41\n", "Model"), -1);
}

TEST_F(AHostSetting, AfterALineWithoutAnEqualsSignIsNotFound) {
  allowLeftOpen(kHostFile);
  EXPECT_EQ(queryIn("[System]\n\nModel = K41\n", "Model"), -1);
  EXPECT_EQ(value, "");
}

TEST_F(AHostSetting, AfterALineLongerThanTheBufferIsNotFound) {
  allowLeftOpen(kHostFile);
  EXPECT_EQ(queryIn("Long = " + std::string(300, 'x') + "\nModel = K41\n", "Model"), -1);
}

TEST_F(AHostSetting, AfterALineThatJustFitsTheBufferIsFound) {
  EXPECT_EQ(queryIn("Long=" + std::string(249, 'x') + "\nModel = K41\n", "Model"), 0);
  EXPECT_EQ(value, "K41");
}

TEST_F(AHostSetting, OfThirtyOneCharactersIsGivenWhole) {
  EXPECT_EQ(queryIn("Model = " + std::string(31, 'm') + "\n", "Model"), 0);
  EXPECT_EQ(value, std::string(31, 'm'));
}

TEST_F(AHostSetting, OfMoreCharactersIsCut) {
  EXPECT_EQ(queryIn("Model = " + std::string(32, 'm') + "\n", "Model"), 0);
  EXPECT_EQ(value, std::string(31, 'm'));
}

class AHost : public ContractTest {};

constexpr char kVendorCommand[] = "/bin/cat /proc/cpuinfo | /bin/grep vendor_id > /tmp/vl_cpu.info";

TEST_F(AHost, WithAnIntelProcessorIsNeverLimited) {
  host.processor("GenuineIntel");
  host.model("TS-K41");
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 0);
}

TEST_F(AHost, WithAnIntelProcessorAmongOthersIsNeverLimited) {
  host.commands.does(kVendorCommand, [this] {
    host.files.write("/tmp/vl_cpu.info", "vendor_id : AuthenticAMD\nvendor_id : GenuineIntel\n");
  });
  host.model("TS-K41");
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 0);
}

class ALimitedModel : public AHost, public testing::WithParamInterface<const char *> {};

TEST_P(ALimitedModel, ServesOneChannelOnly) {
  host.processor("AuthenticAMD");
  host.model(GetParam());
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 1);
}

TEST_P(ALimitedModel, ServesOneChannelOnlyOnAProcessorWithoutAVendorToo) {
  host.model(GetParam());
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 1);
}

INSTANTIATE_TEST_SUITE_P(ByAnyTextAround, ALimitedModel, testing::Values("K41", "K52", "TS-K41x", "xK52"));

class AnUnlimitedModel : public AHost, public testing::WithParamInterface<const char *> {};

TEST_P(AnUnlimitedModel, ServesEveryChannel) {
  host.processor("AuthenticAMD");
  host.model(GetParam());
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 0);
}

INSTANTIATE_TEST_SUITE_P(OfAnyOtherName, AnUnlimitedModel, testing::Values("K42", "k41", "K 41", ""));

TEST_F(AHost, IsAskedForItsProcessorBeforeItsModel) {
  host.model("K41");
  AMDmodel_oneChannelLimited();
  EXPECT_THAT(host.journal.lines(),
              ElementsAre(std::string("system ") + kVendorCommand, "fopen /tmp/vl_cpu.info", "fclose /tmp/vl_cpu.info",
                          "fopen /etc/config/Tundrel.conf", "fclose /etc/config/Tundrel.conf"));
}

TEST_F(AHost, WithAnIntelProcessorIsNotAskedForItsModel) {
  host.processor("GenuineIntel");
  AMDmodel_oneChannelLimited();
  EXPECT_THAT(host.journal.lines(), ElementsAre(std::string("system ") + kVendorCommand, "fopen /tmp/vl_cpu.info",
                                                "fclose /tmp/vl_cpu.info"));
}

TEST_F(AHost, IsAskedAgainByEveryCall) {
  host.limitToOneChannel();
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 1);
  host.processor("GenuineIntel");
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 0);
}

TEST_F(AHost, WhoseProcessorCannotBeReadIsNotLimited) {
  host.model("K41");
  host.files.makeUnreadable("/tmp/vl_cpu.info");
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 0);
}

TEST_F(AHost, WithoutASettingsFileIsNotLimited) { EXPECT_EQ(AMDmodel_oneChannelLimited(), 0); }

TEST_F(AHost, WithoutAModelIsNotLimited) {
  host.files.write(kHostFile, "[System]\nModel = K41\n");
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 0);
}

TEST_F(AHost, WhoseModelIsAfterTheNtpSectionIsNotLimited) {
  allowLeftOpen(kHostFile);
  host.files.write(kHostFile, "[NTP]\nInternal Model = K41\n");
  EXPECT_EQ(AMDmodel_oneChannelLimited(), 0);
}

}  // namespace
}  // namespace contract
