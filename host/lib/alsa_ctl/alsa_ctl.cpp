#include "platform/alsa_ctl.h"

#include "cards.h"

/* Both functions return 0, or -1 for no such card, a bad argument, or a card that does not answer. */

extern "C" int ac_get_Acard_info(int card, _acard_info *info) {
  if (card < 0 || !info) return -1;
  _acard_info found{};
  bool described =
      simulated_card::exists(card) ? simulated_card::describe(card, found) : alsa_card::describe(card, found);
  if (!described) return -1;
  *info = found;
  return 0;
}

extern "C" int ac_set_audio_volume(int card, int volume) {
  if (card < 0 || volume < kSilence || volume > kLoudest) return -1;
  bool set = simulated_card::exists(card) ? simulated_card::set_capture_volume(card, volume)
                                          : alsa_card::set_capture_volume(card, volume);
  return set ? 0 : -1;
}
