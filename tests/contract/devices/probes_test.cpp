// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Small questions about the host's model.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kPortCommand[] = "hwinfo_app --usb_get_port_id value='1-1.2'";

class APanelPort : public ContractTest {
 protected:
  int portFor(const std::string &output) {
    host.commands.prints(kPortCommand, output);
    return vl_HOS_CLI_usbid("1-1.2");
  }
};

TEST_F(APanelPort, HasTheNumberThatTheHostPrints) {
  EXPECT_EQ(portFor("3\n"), 3);
  EXPECT_THAT(host.journal.lines(),
              ElementsAre(std::string("popen ") + kPortCommand, std::string("pclose ") + kPortCommand));
}

TEST_F(APanelPort, IsReadFromTheFirstLineOnly) {
  EXPECT_EQ(portFor("\n3\n"), 0);
  EXPECT_EQ(portFor("12 34\n56\n"), 12);
}

TEST_F(APanelPort, IsReadFrom255CharactersOfIt) { EXPECT_EQ(portFor(std::string(254, ' ') + "12\n"), 1); }

TEST_F(APanelPort, OfATextThatIsNotANumberIsZero) { EXPECT_EQ(portFor("no such port\n"), 0); }

TEST_F(APanelPort, IsUnknownWhenTheHostPrintsNothing) { EXPECT_EQ(portFor(""), -1); }

TEST_F(APanelPort, IsUnknownWhenTheHostCannotBeAsked) {
  host.commands.cannotStart(kPortCommand);
  EXPECT_EQ(vl_HOS_CLI_usbid("1-1.2"), -1);
}

TEST_F(APanelPort, OfANameThatWouldLeaveItsQuotesIsNotAskedFor) {
  for (const char *slot : {"'", "1-1' ; reboot '", "1-1\n", "1-1\r"}) EXPECT_EQ(vl_HOS_CLI_usbid(slot), -1) << slot;
  EXPECT_EQ(vl_HOS_CLI_usbid(nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(APanelPort, OfANameThatMeansSomethingOutsideQuotesOnlyIsAskedFor) {
  vl_HOS_CLI_usbid("$(reboot) `x` \"y\" \\");
  EXPECT_THAT(host.journal.commands(), ElementsAre("hwinfo_app --usb_get_port_id value='$(reboot) `x` \"y\" \\'"));
}

TEST_F(APanelPort, OfANameLongerThanAnyPortIsNotAskedFor) {
  EXPECT_EQ(vl_HOS_CLI_usbid(std::string(128, '1').c_str()), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
  vl_HOS_CLI_usbid(std::string(127, '1').c_str());
  EXPECT_THAT(host.journal.commands(),
              ElementsAre("hwinfo_app --usb_get_port_id value='" + std::string(127, '1') + "'"));
}

constexpr char kFirstPicture[] = "/home/httpd/v3_menu/layout/model_0.svg";
constexpr char kSecondPicture[] = "/home/httpd/v3_menu/layout/model_1.svg";

class AModelPicture : public ContractTest {};

TEST_F(AModelPicture, IsTheFirstOne) {
  host.files.write(kFirstPicture, "<svg/>");
  EXPECT_EQ(vl_find_HOS_model_pic(), 0);
  EXPECT_THAT(host.journal.lines(),
              ElementsAre(std::string("fopen ") + kFirstPicture, std::string("fclose ") + kFirstPicture));
}

TEST_F(AModelPicture, IsTheSecondOneWhereThereIsNoFirst) {
  host.files.write(kSecondPicture, "<svg/>");
  EXPECT_EQ(vl_find_HOS_model_pic(), 0);
}

TEST_F(AModelPicture, MayBeMissing) { EXPECT_EQ(vl_find_HOS_model_pic(), -1); }

TEST_F(AModelPicture, ThatCannotBeReadIsMissing) {
  host.files.makeUnreadable(kFirstPicture);
  EXPECT_EQ(vl_find_HOS_model_pic(), -1);
}

constexpr char kStateFile[] = "/tmp/gpuinfo.type";

class AnAddOn : public ContractTest {
 protected:
  int support(const std::string &content) {
    host.files.write(kStateFile, content);
    return vl_check_HOS_halvane_support(&supported);
  }

  int supported = 7;
};

TEST_F(AnAddOn, IsSupportedByAnyNumberButZero) {
  for (const char *line : {"support=1\n", "type=2,support=-3", "support= 12x\n"}) {
    EXPECT_EQ(support(line), 0);
    EXPECT_EQ(supported, 1) << line;
  }
}

TEST_F(AnAddOn, IsNotSupportedByZeroOrNoNumber) {
  for (const char *line : {"support=0\n", "support=\n", "support=yes\n"}) {
    EXPECT_EQ(support(line), 0);
    EXPECT_EQ(supported, 0) << line;
  }
}

TEST_F(AnAddOn, IsNotSupportedByAnEmptyFile) {
  EXPECT_EQ(support(""), 0);
  EXPECT_EQ(supported, 0);
}

TEST_F(AnAddOn, FailsWhenTheFirstLineDoesNotHoldIt) {
  EXPECT_EQ(support("type=2\nsupport=1\n"), -1);
  EXPECT_EQ(supported, 0);
  EXPECT_EQ(support(std::string(250, ' ') + "support=1\n"), -1);
}

TEST_F(AnAddOn, FailsWithoutTheFile) {
  EXPECT_EQ(vl_check_HOS_halvane_support(&supported), -1);
  EXPECT_EQ(supported, 0);
}

TEST_F(AnAddOn, IsRefusedWithoutAPlaceForTheAnswer) {
  EXPECT_EQ(vl_check_HOS_halvane_support(nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
