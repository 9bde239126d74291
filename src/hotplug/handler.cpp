// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/handler.h"

#include "core/change_notification.h"
#include "core/channel_snapshot.h"
#include "core/config.h"
#include "core/text.h"
#include "devices/conflict_hand_over.h"
#include "devices/identification.h"
#include "hotplug/audio_attachment.h"
#include "hotplug/camera_probe.h"
#include "hotplug/channel_choice.h"
#include "hotplug/device_type.h"

namespace usbdev {
namespace {

/// One event, from what was read to what is written.
struct HotplugEvent {
  explicit HotplugEvent(_usbdev_des &event_device) : device(event_device) {}

  _usbdev_des &device;
  ChannelSnapshots channels;
  int slot_switch = 1;
  ChannelChoice choice;
  bool supported = true;
  CameraFindings camera;
  AudioFindings audio;
  ConflictFindings conflicts;

  const ChannelSnapshot &chosen() const { return channels[choice.channel]; }
};

bool readBefore(HotplugEvent &event) {
  const ConfigReader config;
  if (!config) return false;
  readForComparing(config, event.channels);
  if (event.device.plugged != 0) event.slot_switch = storedSwitch(config, event.device.usbslot);
  return true;
}

bool isIgnoredCard(const _usbdev_des &device) { return !isCamera(device) && isIgnoredCardName(device.devname); }

void judgePlugged(HostAnswers &host, HotplugEvent &event, _usbdev_conflict &report) {
  _usbdev_des &device = event.device;
  event.supported = !isListed(device.devname, kNoSupportList);
  if (!isCamera(device)) {
    probeAudioCard(device.node, event.audio);
    return;
  }
  probeCamera(host, device, event.camera);
  event.supported = event.supported && event.camera.usable;
  event.conflicts = findConflicts(host, event.channels, event.choice.channel, device, event.supported, report);
}

void writeRemoved(const Section &channel) {
  channel.set(keys::exists, 0);
  channel.set(keys::vnode, kNone);
  channel.set(keys::anode, kNone);
  channel.set(keys::spsstate, 0);
  channel.set(keys::conflictch, kNone);
}

void writeNewCamera(const Section &channel, const HotplugEvent &event) {
  writeNewDevice(channel, event.device);
  channel.set(keys::venable, 1);
  channel.set(keys::vcodec, event.camera.vcodec);
  channel.set(keys::width, 1280);
  channel.set(keys::height, 720);
  channel.set(keys::framerate, "30.00");
  channel.set(keys::osdenable, 1);
  channel.set(keys::flip, 0);
  channel.set(keys::mirror, 0);
}

void writeCamera(const Section &channel, const HotplugEvent &event) {
  channel.set(keys::exists, 1);
  channel.set(keys::vnode, event.device.node);
  channel.set(keys::spsstate, 0);
  channel.set(keys::conflictch, event.conflicts.parked_behind);
  channel.set(keys::cap, event.camera.cap);
  channel.set(keys::fetype, event.camera.fetype);
  channel.set(keys::ldspoutput, 0);
  if (!event.choice.exact_match) writeNewCamera(channel, event);
}

void writePlugged(const ConfigWriter &config, const HotplugEvent &event) {
  const Section channel = config.channel(event.choice.channel);
  channel.set(keys::slot_switch, event.slot_switch);
  if (isCamera(event.device)) {
    writeCamera(channel, event);
  } else {
    writeAudioCard(channel, event.device, event.audio, event.choice.exact_match);
  }
  writeAudioDetached(channel);
  if (!event.supported) {
    channel.set(keys::conflictch, kUnsupported);
  } else if (event.conflicts.parks != kNone) {
    config.channel(event.conflicts.parks).set(keys::conflictch, event.choice.channel);
  }
  if (event.choice.replaced != kNone) {
    const ChannelSnapshot &replaced = event.channels[event.choice.replaced];
    writeInheritedAudio(channel, replaced.anode, replaced.acap);
    const Section displaced = config.channel(event.choice.replaced);
    // Intended: -1, not 0, is stored for a displaced camera.
    displaced.set(keys::exists, kNeverConfigured);
    displaced.set(keys::anode, kNone);
  }
}

bool writeEvent(const HotplugEvent &event) {
  ConfigWriter config;
  if (!config) return false;
  if (event.device.plugged != 0) {
    writePlugged(config, event);
  } else {
    writeRemoved(config.channel(event.choice.channel));
  }
  return config.save();
}

void notify(const HotplugEvent &event, int successor) {
  if (!isCamera(event.device)) return;
  const bool plugged = event.device.plugged != 0;
  const ChannelSnapshot &channel = event.chosen();
  const bool starts_streaming = event.choice.exact_match && event.conflicts.parked_behind == kNone &&
                                channel.vcodec == Codec::mjpeg && event.slot_switch == 1;
  if (plugged && !starts_streaming) return;
  ChangeNotification notification = ChangeNotification::ofCamera(channel.profile, plugged);
  if (successor != kNone) notification.target = successor;
  sendNotification(notification);
}

}  // namespace

int handleHotplug(HostAnswers &host, _usbdev_des &device, int &profile, TextBuffer devname, int &vnode,
                  _usbdev_conflict &conflict) {
  profile = kNone;
  HotplugEvent event(device);
  if (!readBefore(event)) return kNone;

  const bool plugged = device.plugged != 0;
  event.choice = plugged ? chooseForPlugged(event.channels, device) : chooseForRemoved(event.channels, device);
  profile = event.choice.profile;
  if (event.choice.channel == kNone) return kNone;
  if (event.choice.rename != nullptr) copyText(device.devname, event.choice.rename);
  if (!plugged) {
    vnode = event.chosen().vnode;
    if (isCamera(device)) copyText(devname, event.chosen().devname);
  }
  if (isIgnoredCard(device)) return kNone;

  if (plugged) judgePlugged(host, event, conflict);
  if (!writeEvent(event)) return kNone;
  notify(event, followUpConflict(host, event.choice.channel, plugged, event.chosen().conflictch,
                                 event.conflicts.parked_behind));
  return event.choice.channel;
}

}  // namespace usbdev
