// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/machine.h"

#include <pwd.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "machine/stream_failure.h"

namespace usbdevctl {

namespace {

constexpr unsigned long long kLeastRoom = 1U << 20U;

std::string ownName() {
  const passwd *user = getpwuid(geteuid());
  return user != nullptr ? user->pw_name : "user " + std::to_string(geteuid());
}

bool isFull(const std::string &folder) {
  struct statvfs disk = {};
  return statvfs(folder.c_str(), &disk) == 0 && 1ULL * disk.f_bavail * disk.f_frsize < kLeastRoom;
}

}  // namespace

void Machine::addPortFacts(MachineFacts &facts, const std::string &port) const {
  facts.device_there = usb_.isThere(port);
  if (!facts.device_there) {
    facts.port_disabled = files_.number(UsbTree::hubPort(port) + "/disable") != 0;
    facts.over_current = files_.number(UsbTree::hubPort(port) + "/over_current_count");
    return;
  }
  facts.authorized = usb_.attribute(port, "authorized") != "0";
  facts.has_node = usb_.hasNode(port) || !usb_.isCamera(port);
  facts.twin = usb_.twinOf(port);
  facts.has_serial = !usb_.attribute(port, "serial").empty();
}

void Machine::addNodeFacts(MachineFacts &facts, const std::string &node, bool streams) const {
  facts.node = askNode(files_.path(node), !streams);
  if (facts.node.busy || isBusyFailure(facts.failure)) facts.holders = holdersOf(files_, node);
}

void Machine::addStreamFacts(MachineFacts &facts, const CameraPlace &camera) const {
  if (!camera.streams || !camera.profile) return;
  const std::string folder = streamFolder(*camera.profile);
  facts.failure = files_.line(folder + "/failure");
  if (!isLackOfSpace(facts.failure)) return;
  facts.disk_full = isFull(files_.path(folder));
  facts.bus_speed = usb_.speed(camera.port);
  facts.reservations = usb_.reservationsBeside(camera.port);
}

MachineFacts Machine::facts(const CameraPlace &camera) const {
  MachineFacts facts;
  facts.user = ownName();
  addPortFacts(facts, camera.port);
  addStreamFacts(facts, camera);
  if (camera.node) addNodeFacts(facts, "/dev/video" + std::to_string(*camera.node), camera.streams);
  const std::string power = usb_.attribute(camera.port, "power/runtime_status");
  facts.asleep = power == "error" || (power == "suspended" && facts.node.open_error != 0);
  return facts;
}

Reasons Machine::reasons(const CameraPlace &camera) const {
  if (!isReal() || !UsbTree::isPort(camera.port)) return {};
  return machineReasons(camera, facts(camera));
}

}  // namespace usbdevctl
