// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Whether the host may encode H.264 in hardware.
#include "contract_test.h"
#include "encoding_host.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kPathCommand = packageQuery("Halvane", "Install_Path");
const std::string kEnableCommand = packageQuery("Halvane", "Enable");

class AnEncodingHost : public ContractTest {
 protected:
  AnEncodingHost() { allowEncoding(host); }

  int mayEncode() {
    int result = 7;
    EXPECT_EQ(validate_hwenc(&result), 0);
    return result;
  }
};

TEST_F(AnEncodingHost, MayEncode) {
  EXPECT_EQ(mayEncode(), 1);
  EXPECT_THAT(host.journal.only({"popen", "fopen"}),
              ElementsAre("popen " + kPathCommand, "popen " + kEnableCommand, "fopen /share/Halvane/camera_agent.sh",
                          "popen /sbin/readcfg System Model -f /etc/config/Tundrel.conf", "popen gpuinfo_app -l",
                          "popen gpuinfo_app -s GPU0", "fopen /proc/cpuinfo"));
}

TEST_F(AnEncodingHost, WithoutThePackageMayNot) {
  host.package("Halvane", "Install_Path", "READCFG_FAILD");
  EXPECT_EQ(mayEncode(), 0);
  EXPECT_THAT(host.journal.commands(), ElementsAre(kPathCommand));
}

TEST_F(AnEncodingHost, WithoutThePackagesStateMayNot) {
  host.package("Halvane", "Enable", "READCFG_FAILD");
  EXPECT_EQ(mayEncode(), 0);
  EXPECT_THAT(host.journal.only({"fopen"}), IsEmpty());
}

TEST_F(AnEncodingHost, WithTheDisabledPackageMayNot) {
  host.package("Halvane", "Enable", "FALSE");
  EXPECT_EQ(mayEncode(), 0);
  EXPECT_THAT(host.journal.only({"fopen"}), IsEmpty());
}

TEST_F(AnEncodingHost, IsDisabledOnlyByTheTextFalse) {
  for (const char *state : {"false", "FALSE ", "FALSEHOOD", ""}) {
    host.package("Halvane", "Enable", state);
    EXPECT_EQ(mayEncode(), 1) << state;
  }
}

TEST_F(AnEncodingHost, WithoutAReadableAgentMayNot) {
  host.files.makeUnreadable(kAgentFile);
  EXPECT_EQ(mayEncode(), 0);
  EXPECT_THAT(host.journal.commands(), ElementsAre(kPathCommand, kEnableCommand));
}

TEST_F(AnEncodingHost, WhoseModelCannotBeAskedMayEncodeWithoutFurtherQuestions) {
  host.commands.cannotStart(kModelCommand);
  host.files.write("/proc/cpuinfo", "model name: ARMv7\n");
  EXPECT_EQ(mayEncode(), 1);
  EXPECT_EQ(host.journal.commands().back(), kModelCommand);
  EXPECT_EQ(host.journal.count("fopen /proc/cpuinfo"), 0);
}

TEST_F(AnEncodingHost, WithoutAModelIsNotAskedForItsGpu) {
  host.commands.prints(kModelCommand, "");
  EXPECT_EQ(mayEncode(), 1);
  EXPECT_EQ(host.journal.commands().back(), kModelCommand);
  EXPECT_EQ(host.journal.count("fopen /proc/cpuinfo"), 1);
}

TEST_F(AnEncodingHost, IsAskedForItsProcessorAfterTheModelCommandHasEnded) {
  mayEncode();
  const Lines steps = host.journal.only({"pclose", "fopen"});
  ASSERT_GE(steps.size(), 2U);
  EXPECT_EQ(steps[steps.size() - 2], std::string("pclose ") + kModelCommand);
  EXPECT_EQ(steps.back(), "fopen /proc/cpuinfo");
}

TEST_F(AnEncodingHost, WithAnEmptyModelLineIsAskedForItsGpu) {
  host.commands.prints(kModelCommand, "\n");
  host.commands.prints(kGpuStateCommand, "driver_installed=0\n");
  EXPECT_EQ(mayEncode(), 0);
}

TEST_F(AnEncodingHost, WithoutAGpuDriverMayNotAndItsProcessorIsNotAsked) {
  host.commands.prints(kGpuStateCommand, "driver_installed=0\n");
  EXPECT_EQ(mayEncode(), 0);
  EXPECT_EQ(host.journal.count("fopen /proc/cpuinfo"), 0);
}

TEST_F(AnEncodingHost, WithAnArmProcessorMayNot) {
  host.files.write("/proc/cpuinfo", "processor\t: 0\nmodel name\t: ARMv8 Processor rev 4\nprocessor\t: 1\n");
  EXPECT_EQ(mayEncode(), 0);
}

TEST_F(AnEncodingHost, IsAnArmHostOnlyWithTheTextInCapitals) {
  host.files.write("/proc/cpuinfo", "model name\t: Charm armv8\n");
  EXPECT_EQ(mayEncode(), 1);
}

TEST_F(AnEncodingHost, WithoutProcessorInformationMayEncode) {
  host.files.makeUnreadable("/proc/cpuinfo");
  EXPECT_EQ(mayEncode(), 1);
}

TEST_F(AnEncodingHost, WithoutAPlaceForTheAnswerIsNotAsked) {
  EXPECT_EQ(validate_hwenc(nullptr), 0);
  EXPECT_EQ(check_gpu_status(nullptr), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

class AGpu : public ContractTest {
 protected:
  int hasDriver() {
    int result = 7;
    EXPECT_EQ(check_gpu_status(&result), 0);
    return result;
  }
  int listedAs(const std::string &list) {
    host.commands.prints(kGpuListCommand, list);
    host.commands.prints(kGpuStateCommand, "driver_installed=1\n");
    return hasDriver();
  }
  int withState(const std::string &state) {
    host.commands.prints(kGpuListCommand, "GPU0: 01:00.0 VGA\n");
    host.commands.prints(kGpuStateCommand, state);
    return hasDriver();
  }
};

TEST_F(AGpu, HasADriverByTheFirstLineOfItsState) {
  EXPECT_EQ(withState("driver_installed=1\n"), 1);
  EXPECT_EQ(withState("name=x driver_installed=1;\n"), 1);
  EXPECT_EQ(withState("name=x\ndriver_installed=1\n"), 0);
  EXPECT_EQ(withState("driver_installed=0\n"), 0);
  EXPECT_EQ(withState(""), 0);
}

TEST_F(AGpu, IsTheFirstOneListed) {
  EXPECT_EQ(listedAs("GPU0: 01:00.0\nGPU1: 02:00.0\n"), 1);
  EXPECT_THAT(host.journal.lines(), ElementsAre("popen gpuinfo_app -l", "pclose gpuinfo_app -l",
                                                "popen gpuinfo_app -s GPU0", "pclose gpuinfo_app -s GPU0"));
}

TEST_F(AGpu, ThatIsNotListedHasNoDriver) {
  EXPECT_EQ(listedAs(""), 0);
  EXPECT_THAT(host.journal.commands(), ElementsAre(kGpuListCommand));
}

TEST_F(AGpu, WithoutAColonAfterItsNameHasNoDriver) {
  EXPECT_EQ(listedAs("GPU0\n"), 0);
  EXPECT_THAT(host.journal.commands(), ElementsAre(kGpuListCommand));
}

TEST_F(AGpu, HasNoDriverByItsName) {
  EXPECT_EQ(listedAs("driver_installed=1: 01:00.0\n"), 0);
  EXPECT_THAT(host.journal.commands(), ElementsAre(kGpuListCommand, "gpuinfo_app -s driver_installed=1"));
}

TEST_F(AGpu, MayHaveBlanksInItsName) {
  host.commands.prints("gpuinfo_app -s Fast GPU 3", "driver_installed=1\n");
  EXPECT_EQ(listedAs("Fast GPU 3: 01:00.0\n"), 1);
}

TEST_F(AGpu, WhoseNameMeansMoreToTheShellIsNotAskedFor) {
  for (const char part : std::string("|&;<>()$`\\\"'*?[]{}#~\t\r")) {
    host.journal.clear();
    EXPECT_EQ(listedAs(std::string("GPU") + part + "0: 01:00.0\n"), 0) << part;
    EXPECT_THAT(host.journal.commands(), ElementsAre(kGpuListCommand)) << part;
  }
}

TEST_F(AGpu, WhoseNameLooksLikeAnOptionIsNotAskedFor) {
  EXPECT_EQ(listedAs("-rf: 01:00.0\n"), 0);
  EXPECT_THAT(host.journal.commands(), ElementsAre(kGpuListCommand));
}

TEST_F(AGpu, HasNoDriverWhenACommandCannotStart) {
  host.commands.cannotStart(kGpuStateCommand);
  EXPECT_EQ(listedAs("GPU0: 01:00.0\n"), 0);
  host.commands.cannotStart(kGpuListCommand);
  EXPECT_EQ(hasDriver(), 0);
}

TEST_F(AGpu, WithANameLongerThanTheBufferHasNoDriver) {
  EXPECT_EQ(listedAs(std::string(300, 'G') + ": 01:00.0\n"), 0);
  EXPECT_THAT(host.journal.commands(), ElementsAre(kGpuListCommand));
}

TEST_F(AGpu, WithTheLongestNameIsAskedForByAllOfIt) {
  const std::string name(253, 'G');
  host.commands.prints("gpuinfo_app -s " + name, "driver_installed=1\n");
  EXPECT_EQ(listedAs(name + ":\n"), 1);
}

}  // namespace
}  // namespace contract
