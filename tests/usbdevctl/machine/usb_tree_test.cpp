// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/usb_tree.h"

#include <gmock/gmock.h>

#include "machine/fake_machine.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;
using usbdevctl::Bus;
using usbdevctl::KernelFiles;
using usbdevctl::Reservation;
using usbdevctl::UsbTree;

class TheUsbTree : public testing::Test {
 protected:
  TheUsbTree() {
    machine_.plug("3-1", "Cam", "1", 0);
    machine_.plug("3-2.4", "Cam", "2", 2);
  }

  void reserve(const std::string &port) {
    machine_.write("/sys/bus/usb/devices/" + port + "/descriptors", greedyDescriptors());
    machine_.set(port, port + ":1.1/bAlternateSetting", " 1");
  }

  FakeMachine machine_;
  KernelFiles files_{machine_.root()};
  UsbTree usb_{files_};
};

TEST_F(TheUsbTree, KnowsAPortFromOtherTexts) {
  for (const char *port : {"3-1", "12-1.2.3"}) EXPECT_TRUE(UsbTree::isPort(port)) << port;
  for (const char *other : {"", "3", "usb3", "3-1:1.0", "../3-1", "3-1/..", "3-1\n", "3-1."}) {
    EXPECT_FALSE(UsbTree::isPort(other)) << other;
  }
}

TEST_F(TheUsbTree, HasTheCamerasAndNoOtherDevices) {
  machine_.set("3-3", "3-3:1.0/bInterfaceClass", "03");
  EXPECT_THAT(usb_.cameras(), ElementsAre("3-1", "3-2.4"));
  EXPECT_TRUE(usb_.isThere("3-3"));
  EXPECT_FALSE(usb_.isThere("3-4"));
}

TEST_F(TheUsbTree, HasTheHubsFolderOfEachPort) {
  EXPECT_EQ(UsbTree::hubPort("3-1"), "/sys/bus/usb/devices/3-0:1.0/usb3-port1");
  EXPECT_EQ(UsbTree::hubPort("3-2.4"), "/sys/bus/usb/devices/3-2:1.0/3-2-port4");
}

TEST_F(TheUsbTree, NamesWhoReservesBandwidthOnTheSameBus) {
  EXPECT_THAT(usb_.reservationsBeside("3-1"), IsEmpty());
  machine_.plug("4-1", "Other bus", "4", 4);
  for (const char *port : {"3-1", "3-2.4", "4-1"}) reserve(port);
  const std::vector<Reservation> found = usb_.reservationsBeside("3-1");
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].port, "3-2.4");
  EXPECT_EQ(found[0].bits, 3LL * 1024 * 8000 * 8);
}

TEST_F(TheUsbTree, AddsUpWhatIsReservedOnEachBus) {
  for (const char *root_hub : {"usb3", "usb12", "usb4", "usbx", "usb1234"}) machine_.set(root_hub, "speed", "480");
  machine_.set("usb4", "speed", "5000");
  for (const char *port : {"3-1", "3-2.4"}) reserve(port);
  const auto is = [](int number, int speed, int reserved) {
    return AllOf(Field(&Bus::number, number), Field(&Bus::speed, speed), Field(&Bus::reserved, reserved));
  };
  EXPECT_THAT(usb_.buses(), ElementsAre(is(3, 480, 394), is(4, 5000, 0), is(12, 480, 0)));
}

TEST_F(TheUsbTree, NamesNoMoreThanSixteenOfThem) {
  for (int port = 10; port < 40; ++port) {
    machine_.plug("3-" + std::to_string(port), "Cam", "", port);
    reserve("3-" + std::to_string(port));
  }
  EXPECT_THAT(usb_.reservationsBeside("3-1"), SizeIs(16));
}

TEST_F(TheUsbTree, FindsATwinByTheSerialNumberWhateverItsModel) {
  EXPECT_EQ(usb_.twinOf("3-1"), std::nullopt);
  machine_.plug("4-1", "Another", "1", 4);
  machine_.set("4-1", "idVendor", "1234");
  EXPECT_EQ(usb_.twinOf("3-1"), "4-1");
  EXPECT_EQ(usb_.twinOf("4-1"), "3-1");
}

TEST_F(TheUsbTree, FindsATwinWithoutSerialNumberOnlyAmongTheSameModel) {
  machine_.plug("5-1", "None", "", 6);
  machine_.plug("5-2", "None either", "", 8);
  machine_.set("5-2", "idProduct", "9999");
  EXPECT_EQ(usb_.twinOf("5-1"), std::nullopt);
  machine_.plug("5-3", "None", "", 10);
  EXPECT_EQ(usb_.twinOf("5-1"), "5-3");
}

}  // namespace
