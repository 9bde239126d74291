#include "situations.h"

namespace contract {

HostChannel cameraOn(Host &host, int channel, const std::string &slot, int node, int profile) {
  host.camera(node, slot).ids("046d", "0825").listing(Listing().format("MJPG").size(640, 480).rate("30.000").text());
  return host.channel(channel)
      .exists(1)
      .slot(slot)
      .name("HD Webcam")
      .vnode(node)
      .profile(profile)
      .slotSwitch(1)
      .set("video/cap", "1");
}

void linkOnDisk(Host &host, const std::string &name) {
  const std::string root = "/mnt/ext/opt/apps/Velmora2/";
  host.files.link(root + name, root + "hls/channel1");
}

}  // namespace contract
