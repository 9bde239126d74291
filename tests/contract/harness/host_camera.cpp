// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "host_camera.h"

namespace contract {

namespace {

std::string device(int node) { return "/dev/video" + std::to_string(node); }

std::string parentBlock(const std::string &path, const std::string &kernel, const std::string &attributes) {
  return "\n  looking at parent device '" + path + "':\n    KERNELS==\"" + kernel + "\"\n" + attributes;
}

}  // namespace

std::string walkCommand(int node) { return "/sbin/udevadm info --name=" + device(node) + " --attribute-walk"; }

std::string classCommand(int node) { return "/sbin/udevadm info -a -n " + device(node) + " | grep '{class}'"; }

std::string deviceLineCommand(int node) {
  return "/sbin/udevadm info -a -n " + device(node) + " | grep 'looking at device'";
}

std::string listingCommand(int node) { return "/usr/bin/v4l2-ctl -d " + device(node) + " --list-formats-ext"; }

std::string queryProcessCommand(int node) {
  return "/bin/ps | /bin/grep \"v4l2-ctl\" | /bin/grep \"" + device(node) +
         "\" | /bin/grep -v grep | /bin/awk '{print $1}'";
}

HostCamera &HostCamera::ids(const std::string &vendor, const std::string &product) {
  const std::string controller = "/devices/platform/soc/usb";
  const std::string own = controller + "/" + slot_;
  commands_.prints(
      walkCommand(node_),
      "\n  looking at device '" + own + "/" + slot_ + ":1.0/video4linux/video" + std::to_string(node_) +
          "':\n    KERNEL==\"video" + std::to_string(node_) + "\"\n    ATTR{name}==\"Camera\"\n" +
          parentBlock(own + "/" + slot_ + ":1.0", slot_ + ":1.0", "    ATTRS{interface}==\"Video\"\n") +
          parentBlock(own, slot_,
                      "    ATTRS{idProduct}==\"" + product + "\"\n    ATTRS{idVendor}==\"" + vendor + "\"\n") +
          parentBlock(controller, "usb1", "    ATTRS{idProduct}==\"0002\"\n    ATTRS{idVendor}==\"1d6b\"\n"));
  return *this;
}

HostCamera &HostCamera::listing(const std::string &text) {
  commands_.prints(listingCommand(node_), text);
  return *this;
}

HostCamera &HostCamera::behindBridge(const std::string &controller) {
  commands_.prints(classCommand(node_), "    ATTRS{class}==\"0x0c0330\"\n    ATTRS{class}==\"0x060400\"\n");
  commands_.prints(deviceLineCommand(node_), "  looking at device '" + controller + "/usb3/" + slot_ + "/" + slot_ +
                                                 ":1.0/video4linux/video" + std::to_string(node_) + "':\n");
  return *this;
}

Listing &Listing::format(const std::string &code) {
  text_ += "\tIndex       : " + std::to_string(formats_++) + "\n\tType        : Video Capture\n\tPixel Format: '" +
           code + "'\n\tName        : Motion\n";
  return *this;
}

Listing &Listing::size(int width, int height) {
  text_ += "\t\tSize: Discrete " + std::to_string(width) + "x" + std::to_string(height) + "\n";
  return *this;
}

Listing &Listing::rate(const std::string &fps) {
  text_ += "\t\t\tInterval: Discrete 0.033s (" + fps + " fps)\n";
  return *this;
}

std::string Listing::text() const { return text_; }

}  // namespace contract
