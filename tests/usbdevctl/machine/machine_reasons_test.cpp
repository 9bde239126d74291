// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <cerrno>

#include "machine/machine.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using usbdevctl::CameraPlace;
using usbdevctl::hidesCamera;
using usbdevctl::MachineFacts;
using usbdevctl::Reason;
using usbdevctl::Reasons;
using usbdevctl::sentences;

// A camera on a machine that has nothing against it.
class AReasonOfTheMachine : public testing::Test {
 protected:
  AReasonOfTheMachine() {
    camera_.port = "3-1";
    camera_.node = 2;
    camera_.profile = 0;
    camera_.streams = true;
    facts_.node.exists = true;
    facts_.user = "ann";
  }

  std::vector<std::string> all() const {
    std::vector<std::string> texts;
    for (const Reason &it : machineReasons(camera_, facts_))
      texts.push_back(std::string(it.word) + ": " + sentences(it));
    return texts;
  }

  void expect(const std::string &word, const std::string &why, const std::string &cure) const {
    EXPECT_THAT(all(), ElementsAre(word + ": " + why + ". " + cure + "."));
  }

  CameraPlace camera_;
  MachineFacts facts_;
};

TEST_F(AReasonOfTheMachine, IsNotThereIfNothingIsWrong) { EXPECT_THAT(all(), IsEmpty()); }

TEST_F(AReasonOfTheMachine, IsThatTheDeviceIsGone) {
  facts_.device_there = false;
  expect("gone", "Its USB device is not there any more",
         "Plug it into port 3-1 again; if it is attached, 'usbdevctl sync' finds it");
  camera_.attached = false;
  EXPECT_THAT(all(), IsEmpty()) << "then the channel says so already";
}

TEST_F(AReasonOfTheMachine, IsThatThePortIsDisabledOrWithoutPower) {
  facts_.device_there = false;
  camera_.attached = false;
  facts_.over_current = 2;
  expect("over_current", "The hub cut the power of port 3-1, because too much current flowed (2 times since the start)",
         "Take other devices off the hub, or use a hub with a power supply of its own");
  facts_.port_disabled = true;
  expect("port_disabled", "The hub's port 3-1 is disabled",
         "'echo 0 | sudo tee /sys/bus/usb/devices/3-0:1.0/usb3-port1/disable' enables it");
}

TEST_F(AReasonOfTheMachine, IsThatTheDeviceIsNotAuthorised) {
  facts_.authorized = false;
  camera_.attached = false;
  expect("unauthorized", "The USB device in port 3-1 is not authorised",
         "'echo 1 | sudo tee /sys/bus/usb/devices/3-1/authorized' authorises it");
}

TEST_F(AReasonOfTheMachine, IsThatThereIsNoNodeForPictures) {
  facts_.node.captures = false;
  expect("no_capture_node", "/dev/video2 is a node for metadata, not for pictures",
         "'usbdevctl sync' looks for the camera's other node");
  facts_.has_node = false;
  expect("no_capture_node", "It has no node for pictures",
         "'sudo modprobe uvcvideo' loads the driver; then plug the camera in again");
}

TEST_F(AReasonOfTheMachine, IsThatTheNodeIsGone) {
  facts_.node.exists = false;
  expect("gone", "/dev/video2 is not there any more",
         "Plug it into port 3-1 again; if it is attached, 'usbdevctl sync' finds it");
}

TEST_F(AReasonOfTheMachine, IsThatTheUserMayNotOpenTheNode) {
  facts_.node.open_error = EACCES;
  expect("no_permission", "The user ann may not open /dev/video2", "'sudo adduser ann video', then log in again");
}

TEST_F(AReasonOfTheMachine, IsThatTheStreamMayNotOpenTheNode) {
  facts_.failure = "Permission denied";
  expect("no_permission", "Its stream's process may not open /dev/video2",
         "'sudo chgrp video /dev/video2 && sudo chmod g+rw /dev/video2' lets it");
}

TEST_F(AReasonOfTheMachine, IsThatTheDeviceDoesNotWake) {
  facts_.node.open_error = EIO;
  expect("failing", "/dev/video2 cannot be opened: Input/output error", "Plug the camera in again, with another cable");
  facts_.asleep = true;
  expect("suspended", "Its USB device is suspended and does not wake: Input/output error",
         "'echo on | sudo tee /sys/bus/usb/devices/3-1/power/control' keeps it awake; if that does not help, plug it "
         "in again");
}

TEST_F(AReasonOfTheMachine, IsThatAnotherProgramUsesTheCamera) {
  facts_.node.busy = true;
  facts_.holders.programs = {"motion (process 47)", "cheese (process 48)"};
  expect("busy", "Another program uses it: motion (process 47), cheese (process 48)", "End that program");
  facts_.node.busy = false;
  facts_.failure = "Device or resource busy";
  expect("busy", "Another program uses it: motion (process 47), cheese (process 48)", "End that program");
}

TEST_F(AReasonOfTheMachine, NamesNoProgramThatOnlyRootSees) {
  facts_.node.busy = true;
  facts_.holders.all_seen = false;
  expect("busy", "Another program uses it; only root can see which one",
         "'sudo usbdevctl explain 3-1' names the program; end it");
  facts_.holders.all_seen = true;
  expect("busy", "Another program uses it: one that has ended since", "End that program");
}

TEST_F(AReasonOfTheMachine, IsMissingBandwidthAndWhoHasIt) {
  facts_.failure = "No space left on device";
  facts_.bus_speed = 480;
  facts_.reservations = {{"3-2", "HD\x1b", 196'608'000}, {"3-4", "", 1'536'001}};
  expect(
      "bandwidth",
      "The USB bus has not enough bandwidth left for it; reserved are 197 of 480 Mbit/s for \"HD\\x1b\" in port 3-2, 2 "
      "of 480 Mbit/s for the device in port 3-4",
      "Lower the size or the rate of one of them, such as 'usbdevctl stream set 3-1 --size 640x480', or plug one into "
      "a "
      "port of another USB controller, whose ports do not begin with 3-");
  EXPECT_THAT(machineReasons(camera_, facts_).front().values,
              Contains(Pair("reserved", R"("HD\x1b" 3-2: 197/480 Mbit/s, 3-4: 2/480 Mbit/s)")));
  facts_.reservations.clear();
  expect("bandwidth",
         "The USB bus has not enough bandwidth for it, although no other camera or sound card reserves any now",
         "Lower its size or its rate, such as 'usbdevctl stream set 3-1 --size 640x480', or plug it into a port of "
         "another USB controller, whose ports do not begin with 3-");
}

TEST_F(AReasonOfTheMachine, IsAFullDiskWithTheSameError) {
  facts_.failure = "No space left on device";
  facts_.disk_full = true;
  expect("disk_full", "The disk of /mnt/ext/opt/apps/Velmora2/hls/channel1, to which its stream is written, is full",
         "Remove files from it");
}

TEST_F(AReasonOfTheMachine, IsWhatElseTheStreamWasRefused) {
  facts_.failure = "Protocol error\x1b";
  expect("failing", "Its stream failed: Protocol error\\x1b",
         "It is started again by itself; if it fails again, plug the camera in again, with another cable");
}

TEST_F(AReasonOfTheMachine, IsANoticeForTwins) {
  facts_.twin = "3-2";
  expect("twins", "Neither it nor the camera in port 3-2 has a serial number, so only their ports tell the two apart",
         "Leave each in its port");
  facts_.has_serial = true;
  expect("twins", "The camera in port 3-2 has the same serial number, so only their ports tell the two apart",
         "Leave each in its port");
  EXPECT_FALSE(anyHinders(machineReasons(camera_, facts_)));
}

TEST_F(AReasonOfTheMachine, HidesTheCameraIfItsNodeCannotBeAsked) {
  facts_.node.open_error = EACCES;
  EXPECT_TRUE(hidesCamera(machineReasons(camera_, facts_).front()));
  facts_.node.open_error = 0;
  facts_.node.busy = true;
  EXPECT_FALSE(hidesCamera(machineReasons(camera_, facts_).front()));
}

}  // namespace
