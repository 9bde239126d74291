#include <usbdev/profiles.h>

#include "core/config.h"
#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/formats.h"

namespace usbdev {
namespace {

struct Capability {
  int node;
  char text[16];
};

/// A profile's camera or sound card; false when it is not attached, switched off or has no node.
bool readCapability(int profile, const IntKey &node, const TextKey<16> &text, Capability &out) {
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return false;
  const ConfigReader config;
  if (!config) return false;
  const Section &section = config.channel(channel);
  if (section.get(keys::exists) == 0 || section.get(keys::slot_switch, 1) == 0) return false;
  out.node = section.get(node);
  section.get(text, out.text);
  return out.node != kNone;
}

int giveStoredText(int profile, const IntKey &node, const TextKey<16> &text, char *out) {
  Capability capability;
  if (out == nullptr || !readCapability(profile, node, text, capability)) return -1;
  copyCut(out, capability.text, sizeof capability.text - 1);
  return 0;
}

}  // namespace
}  // namespace usbdev

int vl_get_usbchn_cap(int profile, _usbfmt_des *table) {
  usbdev::Capability camera;
  if (table == nullptr || !usbdev::readCapability(profile, usbdev::keys::vnode, usbdev::keys::cap, camera)) return -1;
  usbdev::HostAnswers host;
  bool over60 = false;
  return usbdev::listFormats(host, camera.node, table, over60);
}

int vl_get_profile_video_cap(int profile, char *cap) {
  return usbdev::giveStoredText(profile, usbdev::keys::vnode, usbdev::keys::cap, cap);
}

int vl_get_usbchn_audio_cap(int profile, char *cap) {
  return usbdev::giveStoredText(profile, usbdev::keys::anode, usbdev::keys::acap, cap);
}
