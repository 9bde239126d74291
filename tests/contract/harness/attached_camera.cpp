// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "attached_camera.h"

#include "stream_links.h"

namespace contract {

HostCamera plugged(Host &host, const std::string &slot, int node) {
  return host.camera(node, slot)
      .ids("046d", "0825")
      .listing(Listing().format("MJPG").size(640, 480).rate("30.000").text());
}

HostChannel cameraOn(Host &host, int channel, const std::string &slot, int node, int profile) {
  plugged(host, slot, node);
  return host.channel(channel)
      .attached(slot, node)
      .name("HD Webcam")
      .profile(profile)
      .slotSwitch(1)
      .set("video/cap", "1");
}

void linkOnDisk(Host &host, const std::string &name) {
  host.files.link(kLinkFolder + name, kLinkFolder + "hls/channel1");
}

void makeIdentifiers(Host &host) {
  host.commands.allowInsideCriticalSection();  // the link commands hold the lock
  host.commands.prints(kUuidCommand, kUuid);
}

}  // namespace contract
