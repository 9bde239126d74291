// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Sound cards on channels. Attachment is switched off in this build: a card that is plugged in leaves its channel
// without audio. Switching it on again takes kAudioAttachment in the source, and a start-up that leaves a known card on
// its channel (placeCard).
#pragma once

#include <usbdev/records.h>

#include "core/config.h"

namespace usbdev {

struct AudioFindings {
  char acap[16] = "0";
  bool stereo = false;
};

/// Is it a card that is ignored, because it is not the microphone of a camera?
bool isIgnoredCardName(const char *name);

/// Asks a sound card for its capture channels.
void probeAudioCard(int card, AudioFindings &findings);

/// Writes the identity of a device that is new on its channel, and clears what belonged to the device before.
void writeNewDevice(const Section &channel, const _usbdev_des &device);

/// Writes a sound card that was plugged in.
void writeAudioCard(const Section &channel, const _usbdev_des &device, const AudioFindings &findings, bool exact_match);

/// Writes what every plug-in writes while attachment is off.
void writeAudioDetached(const Section &channel);

/// Gives the sound of a displaced camera to the camera that is in its port.
void writeInheritedAudio(const Section &channel, int anode, const char *acap);

}  // namespace usbdev
