// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// plug and unplug: the two device events, passed to the library's hotplug handler.
#include <usbdev/hotplug.h>
#include <usbdev/profiles.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/channel_query.h"
#include "channel/configuration.h"
#include "channel/hotplug_lock.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "device/device_channel.h"
#include "device/hotplug_report.h"
#include "output/numbers.h"
#include "output/output.h"
#include "stream/stream_notice.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

constexpr char kCamera[] = "camera";
constexpr char kAudio[] = "audio";

struct PlugOptions {
  std::string type;
  int node = 0;
  std::string slot;
  std::string name;
  bool json = false;
};

template <std::size_t Size>
void copyCut(const std::string &text, char (&field)[Size]) {
  field[text.copy(field, Size - 1)] = '\0';
}

_usbdev_des descriptorOf(const PlugOptions &device, bool plugged) {
  _usbdev_des descriptor = {};
  descriptor.devtype = device.type == kCamera ? 1 : 0;
  descriptor.node = device.node;
  descriptor.plugged = plugged ? 1 : 0;
  copyCut(device.slot, descriptor.usbslot);
  copyCut(device.name, descriptor.devname);
  return descriptor;
}

/// The library's answer is the same for a device without a channel and for a channel that it could not store.
ExitStatus explainNoChannel(const _usbdev_des &device) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  if (hasChannel(rows, device)) {
    complain("the channel of this device could not be stored");
    return ExitStatus::failure;
  }
  complain(device.plugged != 0 ? "no channel fits this device" : "no channel has a device at this port");
  return ExitStatus::nothing;
}

/// The options of plug and unplug; node and name matter for a plug-in only, which needs them.
void addOptions(Command &command, PlugOptions &device, bool plugged) {
  command.add("--type", &device.type, "Kind of device").require().allow({kCamera, kAudio});
  command.add("--node", &device.node, "N of /dev/videoN, or the number of the sound card").require(plugged).limit(0);
  addPort(command, device.slot, "--slot").require();
  command.add("--name", &device.name, "Product name, cut at 255 bytes").require(plugged);
  addJsonFlag(command, device.json);
}

/// Passes the device to the library, one at a time over the whole host. A device without a channel is explained on
/// standard error.
ExitStatus runHotplug(const PlugOptions &device, bool plugged, HotplugOutcome &outcome) {
  const HotplugLock lock(kHotplugLockFile);
  if (!lock.error().empty()) {
    complain(lock.error());
    return ExitStatus::failure;
  }
  _usbdev_des descriptor = descriptorOf(device, plugged);
  outcome.channel =
      mn_set_usbdev_hotplug(&descriptor, &outcome.profile, outcome.device, &outcome.video_node, &outcome.conflict);
  return outcome.channel >= 0 ? ExitStatus::ok : explainNoChannel(descriptor);
}

/// The library notifies of a camera that is back only if its profile streams MJPEG.
void notifyUnlessMjpeg(const PlugOptions &device, int profile) {
  _streaminfo stream = {};
  if (device.type != kCamera || !numberUnlessNone(profile) || vl_get_stream_info(profile, &stream) != 0) return;
  if (stream.vcodec != kMjpeg) notifyOfStream(profile);
}

ExitStatus plug(const PlugOptions &device) {
  HotplugOutcome outcome;
  const ExitStatus status = runHotplug(device, true, outcome);
  if (status == ExitStatus::failure) return status;
  if (status == ExitStatus::ok) notifyUnlessMjpeg(device, outcome.profile);
  Camera other;
  other.channel = outcome.conflict.channel;
  if (other.channel >= 0) readAgain(other);
  print(recordOutput(plugReport(outcome, other), device.json));
  return status;
}

ExitStatus unplug(const PlugOptions &device) {
  HotplugOutcome outcome;
  const ExitStatus status = runHotplug(device, false, outcome);
  if (status != ExitStatus::failure) print(recordOutput(unplugReport(outcome), device.json));
  return status;
}

}  // namespace

void addPlug(Command &program) {
  auto device = std::make_shared<PlugOptions>();
  Command &command = program.addCommand("plug", "Report to the library that a device was plugged in; print its channel",
                                        [device] { return plug(*device); });
  addOptions(command, *device, true);
}

void addUnplug(Command &program) {
  auto device = std::make_shared<PlugOptions>();
  Command &command = program.addCommand("unplug", "Report to the library that a device was removed; print its channel",
                                        [device] { return unplug(*device); });
  addOptions(command, *device, false);
}

}  // namespace usbdevctl
