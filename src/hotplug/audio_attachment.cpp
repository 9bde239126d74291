// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/audio_attachment.h"

#include "core/profile_mapping.h"
#include "core/text.h"
#include "hotplug/device_type.h"
#include "hotplug/sound_card.h"

namespace usbdev {
namespace {

// Intended: Audio attachment is off.
constexpr bool kAudioAttachment = false;

/// The two fixed settings of a sound card; unused while attachment is switched off.
[[maybe_unused]] inline void writePreset(const Section &channel, bool stereo) {
  channel.set(keys::acodec, stereo ? 1 : 0);
  channel.set(keys::samplerate, stereo ? 48000 : 8000);
  channel.set(keys::channelno, stereo ? 2 : 1);
  channel.set(keys::bitrate, stereo ? 96000 : 64000);
  channel.set(keys::volume, 50);
}

}  // namespace

// Intended: Cards of this make are ignored.
bool isIgnoredCardName(const char *name) { return startsWith(name, "KAB"); }

void probeAudioCard(int card, AudioFindings &findings) {
  const SoundCard known(card);
  if (!known || known.info().entry_count < 1 || known.info().channel_mode != 2) return;
  findings.stereo = known.info().channel_count == 2;
  copyText(findings.acap, findings.stereo ? "1" : "0 1");
}

void writeNewDevice(const Section &channel, const _usbdev_des &device) {
  channel.set(keys::usbslot, device.usbslot);
  if (isCamera(device) || device.devname[0] != '\0') channel.set(keys::devname, device.devname);
  writeUnbound(channel);
}

void writeAudioCard(const Section &channel, const _usbdev_des &device, const AudioFindings &findings,
                    bool exact_match) {
  if constexpr (kAudioAttachment) {
    channel.set(keys::exists, 1);
    channel.set(keys::anode, device.node);
    channel.set(keys::acap, findings.acap);
    if (exact_match) return;
    writeNewDevice(channel, device);
    channel.set(keys::aenable, 1);
    writePreset(channel, findings.stereo);
  }
}

void writeAudioDetached(const Section &channel) {
  if constexpr (!kAudioAttachment) {
    channel.set(keys::anode, kNone);
    channel.set(keys::aenable, 0);
  }
}

void writeInheritedAudio(const Section &channel, int anode, const char *acap) {
  if constexpr (kAudioAttachment) {
    channel.set(keys::anode, anode);
    channel.set(keys::acap, acap);
    channel.set(keys::aenable, 1);
    writePreset(channel, !contains(acap, "0"));
  }
}

}  // namespace usbdev
