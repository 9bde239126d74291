// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "plain_alsa.h"

#include <alsa/asoundlib.h>

#include <cerrno>

PlainAlsa plain_alsa;

namespace {

std::string device() { return "hw:" + std::to_string(plain_alsa.card); }

int answer(const char *function) { return plain_alsa.failing == function ? -1 : 0; }

/// Opens any handle: the only thing that the library does with one is to give it back. What a failure leaves there is
/// not one.
template <typename Handle>
int openOne(const char *function, Handle **handle, bool known = true) {
  *handle = reinterpret_cast<Handle *>(&plain_alsa);
  if (!known || answer(function) < 0) return -1;
  ++plain_alsa.open;
  return 0;
}

int closeOne() {
  --plain_alsa.open;
  return 0;
}

PlainElement &plain(snd_mixer_elem_t *element) { return *reinterpret_cast<PlainElement *>(element); }

snd_mixer_elem_t *elementAt(std::size_t index) {
  const bool any = index < plain_alsa.elements.size();
  return any ? reinterpret_cast<snd_mixer_elem_t *>(&plain_alsa.elements[index]) : nullptr;
}

unsigned asked_device = 0;
snd_pcm_stream_t asked_stream = SND_PCM_STREAM_PLAYBACK;

}  // namespace

extern "C" {

int snd_card_load(int card) { return card == plain_alsa.card ? 1 : 0; }

int snd_ctl_open(snd_ctl_t **control, const char *name, int) {
  return openOne("snd_ctl_open", control, name == device());
}
int snd_ctl_close(snd_ctl_t *) { return closeOne(); }
int snd_ctl_card_info(snd_ctl_t *, snd_ctl_card_info_t *) { return answer("snd_ctl_card_info"); }
const char *snd_ctl_card_info_get_name(const snd_ctl_card_info_t *) { return plain_alsa.name.c_str(); }

int snd_ctl_pcm_next_device(snd_ctl_t *, int *device) {
  ++*device;
  if (*device >= static_cast<int>(plain_alsa.devices.size())) *device = -1;
  return answer("snd_ctl_pcm_next_device");
}
void snd_pcm_info_set_device(snd_pcm_info_t *, unsigned device) { asked_device = device; }
void snd_pcm_info_set_stream(snd_pcm_info_t *, snd_pcm_stream_t stream) { asked_stream = stream; }
int snd_ctl_pcm_info(snd_ctl_t *, snd_pcm_info_t *) {
  const bool captures = asked_stream == SND_PCM_STREAM_CAPTURE && plain_alsa.devices.at(asked_device);
  asked_stream = SND_PCM_STREAM_PLAYBACK;
  asked_device = 0;
  return captures ? 0 : -1;
}

int snd_pcm_open(snd_pcm_t **pcm, const char *name, snd_pcm_stream_t, int) {
  plain_alsa.recorded_from = name;
  return openOne("snd_pcm_open", pcm);
}
int snd_pcm_close(snd_pcm_t *) { return closeOne(); }
int snd_pcm_hw_params_any(snd_pcm_t *, snd_pcm_hw_params_t *) { return answer("snd_pcm_hw_params_any"); }
int snd_pcm_hw_params_get_channels_min(const snd_pcm_hw_params_t *, unsigned *value) {
  *value = plain_alsa.fewest_channels;
  return answer("snd_pcm_hw_params_get_channels_min");
}
int snd_pcm_hw_params_get_channels_max(const snd_pcm_hw_params_t *, unsigned *value) {
  *value = plain_alsa.most_channels;
  return answer("snd_pcm_hw_params_get_channels_max");
}

int snd_mixer_open(snd_mixer_t **mixer, int mode) { return openOne("snd_mixer_open", mixer, mode == 0); }
int snd_mixer_close(snd_mixer_t *) { return closeOne(); }
int snd_mixer_attach(snd_mixer_t *, const char *name) { return name == device() ? answer("snd_mixer_attach") : -1; }
int snd_mixer_selem_register(snd_mixer_t *, snd_mixer_selem_regopt *, snd_mixer_class_t **) {
  return answer("snd_mixer_selem_register");
}
int snd_mixer_load(snd_mixer_t *) { return answer("snd_mixer_load"); }
snd_mixer_elem_t *snd_mixer_first_elem(snd_mixer_t *) { return elementAt(0); }
snd_mixer_elem_t *snd_mixer_elem_next(snd_mixer_elem_t *element) {
  return elementAt(static_cast<std::size_t>(&plain(element) - plain_alsa.elements.data()) + 1);
}

int snd_mixer_selem_has_capture_volume(snd_mixer_elem_t *element) { return plain(element).has_volume ? 1 : 0; }
int snd_mixer_selem_has_capture_switch(snd_mixer_elem_t *element) { return plain(element).has_switch ? 1 : 0; }
int snd_mixer_selem_get_capture_volume_range(snd_mixer_elem_t *element, long *low, long *high) {
  *low = plain(element).low;
  *high = plain(element).high;
  return answer("snd_mixer_selem_get_capture_volume_range");
}
int snd_mixer_selem_set_capture_volume_all(snd_mixer_elem_t *element, long level) {
  plain(element).level = level;
  return answer("snd_mixer_selem_set_capture_volume_all");
}
int snd_mixer_selem_set_capture_switch_all(snd_mixer_elem_t *element, int on) {
  plain(element).on = on;
  return answer("snd_mixer_selem_set_capture_switch_all");
}

}  // extern "C"
