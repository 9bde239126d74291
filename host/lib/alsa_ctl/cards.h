// The two kinds of sound card that platform/alsa_ctl.h describes.
#pragma once

#include "platform/alsa_ctl.h"

constexpr int kSilence = -1;
constexpr int kLoudest = 100;

/// A card of this machine, through its sound driver.
namespace alsa_card {
bool describe(int card, _acard_info &info);
bool setCaptureVolume(int card, int volume);
}  // namespace alsa_card

/// A card that is a folder, /run/usbdev-sim/cards/cardN, with one value a file: name, entry_count, channel_mode,
/// channel_count; volume holds the last volume set.
namespace simulated_card {
bool exists(int card);
bool describe(int card, _acard_info &info);
bool setCaptureVolume(int card, int volume);
}  // namespace simulated_card
