// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/alsa_ctl.h"

#include "cards.h"
#include "host/lib/without_exceptions.h"

namespace {

bool describe(int card, _acard_info &info) {
  return simulated_card::exists(card) ? simulated_card::describe(card, info) : alsa_card::describe(card, info);
}

bool setCaptureVolume(int card, int volume) {
  return simulated_card::exists(card) ? simulated_card::setCaptureVolume(card, volume)
                                      : alsa_card::setCaptureVolume(card, volume);
}

}  // namespace

/// Both functions return 0, or -1 for a missing card, a bad argument, or a card that does not answer.

extern "C" int ac_get_Acard_info(int card, _acard_info *info) {
  if (card < 0 || !info) return -1;
  _acard_info found{};
  if (!withoutExceptions(false, [&] { return describe(card, found); })) return -1;
  *info = found;
  return 0;
}

extern "C" int ac_set_audio_volume(int card, int volume) {
  if (card < 0 || volume < kSilence || volume > kLoudest) return -1;
  return withoutExceptions(false, [&] { return setCaptureVolume(card, volume); }) ? 0 : -1;
}
