// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The two kinds of sound card that platform/alsa_ctl.h describes.
#pragma once

#include "platform/alsa_ctl.h"

constexpr int kSilence = -1;
constexpr int kLoudest = 100;

/// A real card of this machine.
namespace alsa_card {
bool describe(int card, _acard_info &info);
bool setCaptureVolume(int card, int volume);
}  // namespace alsa_card

/// A simulated card: a folder, /run/usbdev-sim/cards/cardN, with one value in each file: name, entry_count,
/// channel_mode, channel_count; the file volume contains the last volume that was set.
namespace simulated_card {
bool exists(int card);
bool describe(int card, _acard_info &info);
bool setCaptureVolume(int card, int volume);
}  // namespace simulated_card
