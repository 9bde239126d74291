// Sound cards on channels. Attachment is switched off in this build: a card that is plugged in leaves its channel
// without audio. Switching it on again is kAudioAttachment in the source and nothing else.
#pragma once

#include <usbdev/records.h>

#include "core/config.h"

namespace usbdev {

struct AudioFindings {
  char acap[16] = "0";
  bool stereo = false;
};

/// Cards of this make are no camera's microphone.
bool isIgnoredCardName(const char *name);

/// Asks a sound card for its capture channels.
void probeAudioCard(int card, AudioFindings &findings);

/// Identity of a device that is new on its channel; what hung on the channel before is cleared.
void writeNewDevice(const Section &channel, const _usbdev_des &device);

/// A sound card that was plugged in.
void writeAudioCard(const Section &channel, const _usbdev_des &device, const AudioFindings &findings, bool exact_match);

/// What every plug-in writes while attachment is off.
void writeAudioDetached(const Section &channel);

/// The sound of a camera that gave way goes to the one that took its port.
void writeInheritedAudio(const Section &channel, int anode, const char *acap);

}  // namespace usbdev
