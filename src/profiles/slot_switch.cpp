// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profiles/slot_switch.h"

#include "core/change_notification.h"
#include "core/event_log.h"
#include "devices/conflict_hand_over.h"
#include "devices/conflicts.h"
#include "devices/slots.h"
#include "devices/stream_type.h"

namespace usbdev {
namespace {

/// One switch, from what was read to what is written.
struct SlotSwitch {
  SlotSwitch(bool switch_on, const _streaminfo &slot_info) : on(switch_on), slot(slot_info), own(slot_info.channel) {}

  bool on;
  const _streaminfo &slot;
  int own;
  ChannelSnapshots channels;
  int parked_behind = kNone;  // the channel that this one has to wait for
  ChannelMarks parks = {};    // the channels that have to wait for this one
};

void findConflicts(HostAnswers &host, const char *usbslot, SlotSwitch &change) {
  ConflictTest test(host, usbslot, change.slot.vnode);
  const bool may_park = change.on && change.slot.vprofile != kNone;
  for (int i = 0; i < kChannels; ++i) {
    const ChannelSnapshot &other = change.channels[i];
    const bool may_stream = other.profile != kNone && other.switched_on;
    if (i == change.own || !other.hasUnparkedCamera() || !(may_stream || may_park)) continue;
    if (!test.conflictsWith(other.usbslot, other.vnode)) continue;
    if (may_stream) {
      change.parked_behind = i;
      return;  // the channels marked up to here stay marked
    }
    change.parks[i] = true;
  }
}

bool writeSwitch(const SlotSwitch &change) {
  ConfigWriter config(OpenFailure::write);
  if (!config) return false;
  for (int i = 0; i < kChannels; ++i) {
    if (i == change.own) config.channel(i).set(keys::slot_switch, change.on ? 1 : 0);
    if (change.parks[i]) config.channel(i).set(keys::conflictch, change.own);
  }
  config.channel(change.own).set(keys::conflictch, change.parked_behind);
  return config.save();
}

/// Does the manager have a stream to start?
bool startsStreaming(const SlotSwitch &change) {
  // Intended: The codec is that of the last other channel.
  const int last = change.own == kChannels - 1 ? kChannels - 2 : kChannels - 1;
  return change.parked_behind == kNone && change.channels[last].vcodec == Codec::mjpeg;
}

void notify(const SlotSwitch &change, int successor) {
  if (!hasVideo(StreamType{change.slot.stream_type})) return;
  const int profile = change.slot.vprofile;
  const bool streams = change.on ? startsStreaming(change) : profile != kNone;
  if (!streams) return;
  ChangeNotification notification = ChangeNotification::ofCamera(profile, change.on);
  if (successor != kNone) notification.target = successor;
  sendNotification(notification);
}

}  // namespace

bool switchSlot(const char *usbslot, SlotState state) {
  _streaminfo slot;
  if (!readSlot(usbslot, slot) || slot.channel == kNone) return false;
  SlotSwitch change(state == SlotState::on, slot);
  // Intended: The messages of failed opens differ here.
  if (!readForComparing(change.channels, OpenFailure::read)) return false;

  HostAnswers host;
  findConflicts(host, usbslot, change);
  if (!writeSwitch(change)) return false;
  const int successor =
      followUpConflict(host, change.own, change.on, change.channels[change.own].conflictch, change.parked_behind);
  logEvent(EventLevel::information, "USB slot [%s] has been %s.", usbslot, change.on ? "enabled" : "disabled");
  notify(change, successor);
  return true;
}

}  // namespace usbdev
