// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Users assign profiles, name them, set their streams, and switch ports.
#include <usbdev/usbdev.h>

#include <cstring>

#include "operations.h"
#include "record_text.h"

namespace model {

namespace {

void check(TwinWorlds &worlds, Choices &choose) {
  const std::string port = choose.port();
  const int profile = choose.profile();
  int library = 77;
  int model = 77;
  worlds.call("vl_chk_usbdev_profile", port, profile);
  worlds.returned(vl_chk_usbdev_profile(port.c_str(), profile, &library),
                  worlds.world.vl_chk_usbdev_profile(port.c_str(), profile, &model));
  worlds.wroteRecord(library, model);
}

void assign(TwinWorlds &worlds, Choices &choose) {
  std::string port = choose.port();
  const int profile = choose.rarely(8) ? choose.profile() : choose.below(USBDEV_PROFILES);
  worlds.call("vl_set_usbchn_profile", port, profile);
  worlds.returned(vl_set_usbchn_profile(port.data(), profile),
                  worlds.world.vl_set_usbchn_profile(port.data(), profile));
}

void clear(TwinWorlds &worlds, Choices &choose) {
  const int profile = choose.profile();
  const int code = choose.eventCode();
  const char *client = choose.of<const char *>({"192.168.1.20", "10.0.0.7", nullptr});
  worlds.call("vl_clear_usbchn_profile", profile, client == nullptr ? "null" : client, code);
  worlds.returned(vl_clear_usbchn_profile(profile, client, code),
                  worlds.world.vl_clear_usbchn_profile(profile, client, code));
}

void rename(TwinWorlds &worlds, Choices &choose) {
  const int profile = choose.profile();
  const int code = choose.eventCode();
  const std::string name = choose.of<std::string>({"Front door", "Yard", "", std::string(300, 'n')});
  worlds.call("vl_set_profile_channelname", profile, name.substr(0, 20), code);
  worlds.returned(vl_set_profile_channelname(profile, name.c_str(), code),
                  worlds.world.vl_set_profile_channelname(profile, name.c_str(), code));
}

// What a settings page asks for: the stream as it is, with some settings changed.
_streaminfo changed(_streaminfo info, Choices &choose) {
  const int codec = choose.below(8);
  if (codec < 2) info.vcodec = codec;
  const int height = choose.of<int>({info.height, info.height, 480, 720, 721});
  if (height != info.height) info.width = height == 480 ? 640 : 1280;
  info.height = height;
  info.framerate = choose.of<float>({info.framerate, info.framerate, 0, 3, 7.5F, 15, 28, 60, 61, 120, 500});
  const int picture = choose.below(32);
  if (picture < 16) {
    info.osdenable = picture & 1;
    info.flip = picture >> 1 & 1;
    info.mirror = picture >> 2 & 1;
    info.ldspoutput = picture >> 3 & 1;
  }
  const int audio = choose.below(12);
  if (audio < 6) {
    info.aenable = audio & 1;
    info.acodec = audio >> 1;
    info.samplerate = 48000;
  }
  info.volume = choose.of<int>({info.volume, info.volume, 0, 50, 100});
  return info;
}

void setStream(TwinWorlds &worlds, Choices &choose) {
  const int profile = choose.profile();
  const int code = choose.eventCode();
  _streaminfo before = contract::zeroed<_streaminfo>();
  memset(before.header, 'a' + choose.below(3), sizeof before.header);
  worlds.world.vl_get_stream_info(profile, &before);
  _streaminfo library = changed(before, choose);
  _streaminfo model = library;
  worlds.call("findclosedFPS", profile, library.vcodec, library.width, library.height, library.framerate);
  float library_rate = -1;
  float model_rate = -1;
  worlds.returned(findclosedFPS(profile, &library, &library_rate),
                  worlds.world.findclosedFPS(profile, &model, &model_rate));
  worlds.wroteRecord(library_rate, model_rate);
  worlds.call("vl_set_usbchn_stream", profile, "this", code);
  worlds.returned(vl_set_usbchn_stream(profile, &library, &before, code),
                  worlds.world.vl_set_usbchn_stream(profile, &model, &before, code));
  worlds.wroteRecord(library, model);
}

void switchPort(TwinWorlds &worlds, Choices &choose) {
  const std::string port = choose.port();
  const std::string state = choose.of<std::string>({"enable", "enable", "enable", "disable", "Enable"});
  const char *client = choose.of<const char *>({"192.168.1.20", nullptr});
  worlds.call("vl_set_usbslot_switch", port, state);
  worlds.returned(vl_set_usbslot_switch(port.c_str(), state.c_str(), client),
                  worlds.world.vl_set_usbslot_switch(port.c_str(), state.c_str(), client));
}

void setSps(TwinWorlds &worlds, Choices &choose) {
  const int profile = choose.profile();
  const int value = choose.below(3);
  worlds.call("mn_set_usbchn_sps", profile, value);
  worlds.returned(mn_set_usbchn_sps(profile, value), worlds.world.mn_set_usbchn_sps(profile, value));
}

void setVolume(TwinWorlds &worlds, Choices &choose) {
  const int profile = choose.profile();
  worlds.call("mn_set_usbdev_volume", profile);
  worlds.returned(mn_set_usbdev_volume(profile), worlds.world.mn_set_usbdev_volume(profile));
}

void setAvailable(TwinWorlds &worlds, Choices &choose) {
  const int profile = choose.below(6) - 1;
  const int value = choose.below(3);
  worlds.call("mn_update_pfstate", profile, value);
  worlds.returned(mn_update_pfstate(profile, value), worlds.world.mn_update_pfstate(profile, value));
}

}  // namespace

const std::vector<Happening> &settingHappenings() {
  static const std::vector<Happening> all = {{3, check},  {40, assign},    {5, clear},
                                             {3, rename}, {14, setStream}, {12, switchPort},
                                             {2, setSps}, {2, setVolume},  {2, setAvailable}};
  return all;
}

}  // namespace model
