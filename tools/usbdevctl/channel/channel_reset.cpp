#include "channel/channel_reset.h"

namespace usbdevctl {

const std::vector<ResetKey> &resetKeys() {
  static const std::vector<ResetKey> keys = {
      {"exists", nullptr, nullptr, 0},
      {"profile", nullptr, nullptr, -1},
      {"usbslot", nullptr, "", 0},
      {"devname", nullptr, "", 0},
      {"slot_switch", nullptr, nullptr, -1},
      {"conflictch", nullptr, nullptr, -1},
      {"createtime", nullptr, "", 0},
      {"profilename", nullptr, "", 0},
      {"hlspath", nullptr, "", 0},
      {"vtag", nullptr, "", 0},
      {"video", "vnode", nullptr, -1},
      {"video", "venable", nullptr, 0},
      {"video", "vcodec", nullptr, 1},
      {"video", "cap", "", 0},
      {"video", "fetype", "", 0},
      {"video", "width", nullptr, 1280},
      {"video", "height", nullptr, 720},
      {"video", "framerate", "30.00", 0},
      {"video", "osdenable", nullptr, 1},
      {"video", "flip", nullptr, 0},
      {"video", "mirror", nullptr, 0},
      {"video", "spsstate", nullptr, 0},
      {"video", "ldspoutput", nullptr, 0},
      {"audio", "anode", nullptr, -1},
      {"audio", "acap", "", 0},
      {"audio", "aenable", nullptr, 1},
      {"audio", "acodec", nullptr, 0},
      {"audio", "samplerate", nullptr, 8000},
      {"audio", "channelno", nullptr, 1},
      {"audio", "bitrate", nullptr, 64000},
      {"audio", "volume", nullptr, 50},
      {"sharelink", "shrenable", nullptr, 0},
      {"sharelink", "pwdenable", nullptr, 0},
      {"sharelink", "shrpwd", "", 0},
      {"sharelink", "ssid", "", 0},
      {"sharelink", "token", "", 0},
      {"sharelink", "hash_string", "", 0},
  };
  return keys;
}

}  // namespace usbdevctl
