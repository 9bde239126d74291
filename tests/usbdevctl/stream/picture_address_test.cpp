// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/picture_address.h"

#include <gtest/gtest.h>

#include "machine/fake_machine.h"

namespace {

using usbdevctl::pictureAddress;

TEST(ThePicturesAddress, IsWhereEverybodyElseSeesThePlaylist) {
  const FakeMachine machine;
  machine.makeFolder("/var/lib/usbdev/apps");
  machine.link(machine.root() + "/var/lib/usbdev/apps", "/mnt/ext/opt/apps");
  EXPECT_EQ(pictureAddress(0, machine.root()), "file:///var/lib/usbdev/apps/Velmora2/hls/channel1/playlist.m3u8");
}

TEST(ThePicturesAddress, IsUnknownOnAHostWithoutAnotherFolder) {
  const FakeMachine machine;
  EXPECT_EQ(pictureAddress(3, machine.root()), "");
  machine.makeFolder("/mnt/ext/opt/apps");
  EXPECT_EQ(pictureAddress(3, machine.root()), "");
  machine.makeFolder("/var/lib/usbdev/apps");
  EXPECT_EQ(pictureAddress(3, machine.root()), "");
}

}  // namespace
