// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/profiles.h>

#include <algorithm>
#include <cstring>

#include "core/profile_mapping.h"
#include "core/text.h"
#include "profiles/assignment.h"
#include "profiles/capabilities.h"
#include "profiles/frame_rates.h"
#include "profiles/information.h"
#include "profiles/listings.h"
#include "profiles/slot_switch.h"
#include "profiles/stream_log.h"
#include "profiles/stream_settings.h"

namespace {

// Intended: The text is not terminated.
void copyList(char *out, const usbdev::ProfileList &list) { std::copy_n(list, std::strlen(list), out); }

}  // namespace

int vl_chk_usbdev_profile(const char *usbslot, int profile, int *unassigned) {
  if (usbslot == nullptr || unassigned == nullptr || !usbdev::isProfile(profile)) return -1;
  bool found_unassigned = false;
  const bool may = usbdev::mayAssign(usbslot, profile, found_unassigned);
  if (found_unassigned) *unassigned = 1;
  return may ? 0 : -1;
}

int vl_set_usbchn_profile(char *usbslot, int profile) {
  return usbslot != nullptr && usbdev::isProfile(profile) && usbdev::assignProfile(usbslot, profile) ? 0 : -1;
}

int vl_clear_usbchn_profile(int profile, const char *client_ip, int event_code) {
  return usbdev::clearProfile(profile, client_ip, usbdev::EventCode{event_code}) ? 0 : -1;
}

int vl_set_profile_channelname(int profile, const char *name, int event_code) {
  return name != nullptr && usbdev::renameProfile(profile, name, usbdev::EventCode{event_code}) ? 0 : -1;
}

int vl_set_usbchn_stream(int profile, _streaminfo *new_info, const _streaminfo *old_info, int event_code) {
  if (new_info == nullptr || old_info == nullptr) return -1;
  return usbdev::setStream(profile, *new_info, *old_info, usbdev::EventCode{event_code}) ? 0 : -1;
}

int findclosedFPS(int profile, const _streaminfo *request, float *chosen_fps) {
  return request != nullptr && chosen_fps != nullptr && usbdev::findRate(profile, *request, *chosen_fps) ? 0 : -1;
}

void Add_setStream_log(int profile, const _streaminfo *new_info, const _streaminfo *old_info, float chosen_fps,
                       int event_code) {
  if (!usbdev::isProfile(profile) || new_info == nullptr || old_info == nullptr) return;
  usbdev::logStreamChange(profile, *new_info, *old_info, chosen_fps, usbdev::EventCode{event_code});
}

// Intended: The client's address is not used.
int vl_set_usbslot_switch(const char *usbslot, const char *state, const char * /*client_ip*/) {
  if (usbslot == nullptr || state == nullptr) return -1;
  const bool on = usbdev::isSame(state, "enable");
  return usbdev::switchSlot(usbslot, on ? usbdev::SlotState::on : usbdev::SlotState::off) ? 0 : -1;
}

int vl_get_available_profile(char *out) {
  usbdev::ProfileList list;
  if (out == nullptr || !usbdev::listFreeProfiles(list)) return -1;
  copyList(out, list);
  return 0;
}

int vl_get_usbdev_list(char *out) {
  usbdev::ProfileList list;
  if (out == nullptr || !usbdev::listStreamableProfiles(list)) return -1;
  copyList(out, list);
  return 0;
}

int vl_get_devpf_list(_usbdev_entry *rows) { return rows != nullptr && usbdev::listChannels(rows) ? 0 : -1; }

int vl_get_profile_list(_usbdev_entry *rows) { return rows != nullptr && usbdev::listProfiles(rows) ? 0 : -1; }

int vl_get_usbchn_cap(int profile, _usbfmt_des *table) {
  return table == nullptr ? -1 : usbdev::listProfileFormats(profile, table);
}

int vl_get_profile_video_cap(int profile, char *cap) {
  usbdev::CapabilityText text;
  if (cap == nullptr || !usbdev::readVideoCapability(profile, text)) return -1;
  usbdev::copyCut(cap, text, sizeof text - 1);
  return 0;
}

int vl_get_usbchn_audio_cap(int profile, char *cap) {
  usbdev::CapabilityText text;
  if (cap == nullptr || !usbdev::readAudioCapability(profile, text)) return -1;
  usbdev::copyCut(cap, text, sizeof text - 1);
  return 0;
}

int vl_get_profile_info(int profile, _profile_info *info) {
  return info != nullptr && usbdev::readProfileInfo(profile, *info) ? 0 : -1;
}

int vl_get_profileID(int channel) { return usbdev::profileOfChannel(channel); }

int vl_get_stream_info(int profile, _streaminfo *info) {
  return info == nullptr ? -1 : static_cast<int>(usbdev::readStreamInfo(profile, *info));
}
