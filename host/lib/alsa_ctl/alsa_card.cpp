// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <alsa/asoundlib.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "cards.h"

namespace {

template <auto Function>
struct With {
  template <typename Handle>
  void operator()(Handle *handle) const {
    Function(handle);
  }
};
using Control = std::unique_ptr<snd_ctl_t, With<snd_ctl_close>>;
using Pcm = std::unique_ptr<snd_pcm_t, With<snd_pcm_close>>;
using Mixer = std::unique_ptr<snd_mixer_t, With<snd_mixer_close>>;

constexpr int kMono = 1;
constexpr int kStereo = 2;

std::string deviceName(int card) { return "hw:" + std::to_string(card); }

/// Is asked first, because opening a missing card prints on standard error.
bool isPresent(int card) { return snd_card_load(card) == 1; }

Control openControl(int card) {
  snd_ctl_t *opened = nullptr;
  if (!isPresent(card) || snd_ctl_open(&opened, deviceName(card).c_str(), SND_CTL_NONBLOCK) < 0) return nullptr;
  return Control(opened);
}

bool readName(snd_ctl_t *control, _acard_info &info) {
  snd_ctl_card_info_t *card = nullptr;
  snd_ctl_card_info_alloca(&card);
  if (snd_ctl_card_info(control, card) < 0) return false;
  snprintf(info.name, sizeof info.name, "%s", snd_ctl_card_info_get_name(card));
  return true;
}

bool canCapture(snd_ctl_t *control, int device) {
  snd_pcm_info_t *info = nullptr;
  snd_pcm_info_alloca(&info);
  snd_pcm_info_set_device(info, static_cast<unsigned>(device));
  snd_pcm_info_set_stream(info, SND_PCM_STREAM_CAPTURE);
  return snd_ctl_pcm_info(control, info) >= 0;
}

std::vector<int> captureDevices(snd_ctl_t *control) {
  std::vector<int> devices;
  for (int device = -1; snd_ctl_pcm_next_device(control, &device) >= 0 && device >= 0;)
    if (canCapture(control, device)) devices.push_back(device);
  return devices;
}

/// Returns 2 for a device that can record only two sound channels, 1 for one that can also record one.
bool readChannels(int card, int device, _acard_info &info) {
  std::string name = deviceName(card) + "," + std::to_string(device);
  snd_pcm_t *opened = nullptr;
  if (snd_pcm_open(&opened, name.c_str(), SND_PCM_STREAM_CAPTURE, SND_PCM_NONBLOCK) < 0) return false;
  Pcm pcm(opened);
  snd_pcm_hw_params_t *parameters = nullptr;
  snd_pcm_hw_params_alloca(&parameters);
  unsigned fewest = 0;
  unsigned most = 0;
  if (snd_pcm_hw_params_any(opened, parameters) < 0 || snd_pcm_hw_params_get_channels_min(parameters, &fewest) < 0 ||
      snd_pcm_hw_params_get_channels_max(parameters, &most) < 0)
    return false;
  info.channel_count = static_cast<int>(fewest);
  info.channel_mode = most >= 2 ? kStereo : kMono;
  return true;
}

Mixer openMixer(int card) {
  snd_mixer_t *opened = nullptr;
  if (!isPresent(card) || snd_mixer_open(&opened, 0) < 0) return nullptr;
  Mixer mixer(opened);
  if (snd_mixer_attach(opened, deviceName(card).c_str()) < 0 ||
      snd_mixer_selem_register(opened, nullptr, nullptr) < 0 || snd_mixer_load(opened) < 0)
    return nullptr;
  return mixer;
}

bool setElement(snd_mixer_elem_t *element, int volume) {
  long low = 0;
  long high = 0;
  if (snd_mixer_selem_get_capture_volume_range(element, &low, &high) < 0) return false;
  long level = volume == kSilence ? low : low + (high - low) * volume / kLoudest;
  if (snd_mixer_selem_set_capture_volume_all(element, level) < 0) return false;
  return !snd_mixer_selem_has_capture_switch(element) ||
         snd_mixer_selem_set_capture_switch_all(element, volume != kSilence) >= 0;
}

}  // namespace

namespace alsa_card {

bool describe(int card, _acard_info &info) {
  Control control = openControl(card);
  if (!control || !readName(control.get(), info)) return false;
  const std::vector<int> devices = captureDevices(control.get());
  info.entry_count = static_cast<int>(devices.size());
  return devices.empty() || readChannels(card, devices.front(), info);
}

bool setCaptureVolume(int card, int volume) {
  Mixer mixer = openMixer(card);
  if (!mixer) return false;
  bool found = false;
  for (auto *element = snd_mixer_first_elem(mixer.get()); element; element = snd_mixer_elem_next(element)) {
    if (!snd_mixer_selem_has_capture_volume(element)) continue;
    if (!setElement(element, volume)) return false;
    found = true;
  }
  return found;
}

}  // namespace alsa_card
