// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/devices.h>

#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/conflict_hand_over.h"
#include "devices/conflicts.h"
#include "devices/creation_time.h"
#include "devices/encoding_permission.h"
#include "devices/formats.h"
#include "devices/identification.h"
#include "devices/probes.h"
#include "devices/slots.h"

int find_pidvid(const _usbdev_des *device, char *pidvid) {
  if (device == nullptr || pidvid == nullptr || !usbdev::isTerminated(device->usbslot)) return 0;
  char found[usbdev::kShortCodeSize];
  if (!usbdev::findProductIds(device->node, device->usbslot, found)) return 0;
  usbdev::copyCut(pidvid, found, sizeof found - 1);
  return 1;
}

int get_fetypeid(const _usbdev_des *device, char *fetype) {
  if (device == nullptr || fetype == nullptr || !usbdev::isTerminated(device->usbslot)) return -1;
  char found[usbdev::kShortCodeSize];
  if (!usbdev::findCameraType(device->node, device->usbslot, found)) return -1;
  usbdev::copyCut(fetype, found, sizeof found - 1);
  return 1;
}

int isPCIbridge(int vnode) { return usbdev::isBehindPciBridge(vnode) ? 1 : 0; }

int get_pcibridgePath(int vnode, char *path) {
  char found[usbdev::kBridgePathSize];
  if (path == nullptr || !usbdev::findPciBridge(vnode, found)) return 0;
  usbdev::copyCut(path, found, sizeof found - 1);
  return 1;
}

int get_switch_state(void *config, const char *usbslot) {
  if (config == nullptr || usbslot == nullptr) return 1;
  return usbdev::storedSwitch(usbdev::OpenConfig(config), usbslot);
}

int devlistcmp(const char *devname, const char *listfile) {
  return devname != nullptr && listfile != nullptr && usbdev::isListed(devname, listfile) ? 1 : 0;
}

int mn_get_usbchn_fmts(int vnode, _usbfmt_des *table, int *over60) {
  if (table == nullptr || over60 == nullptr) return -1;
  usbdev::HostAnswers host;
  bool has_rate_over60 = false;
  const int count = usbdev::listFormats(host, vnode, table, has_rate_over60);
  *over60 = has_rate_over60 ? 1 : 0;
  return count;
}

int validate_hwenc(int *result) {
  if (result != nullptr) *result = usbdev::mayEncode() ? 1 : 0;
  return 0;
}

int check_gpu_status(int *result) {
  if (result != nullptr) *result = usbdev::hasReadyGpu() ? 1 : 0;
  return 0;
}

int vl_force_kill_v4l2_ctl(int vnode) { return usbdev::needsHardKill(vnode) ? 1 : 0; }

int chkconflict(char *other_slot, const char *slot, bool on_bridge, int other_vnode, const char *bridge_path) {
  if (other_slot == nullptr || slot == nullptr) return 0;
  usbdev::HostAnswers host;
  return usbdev::conflictsOnBridge(host, other_slot, slot, other_vnode, on_bridge ? bridge_path : nullptr) ? 1 : 0;
}

// Intended: 1 means that the second time is the earlier one.
int isElderPf(const char *a, const char *b) {
  if (a == nullptr || b == nullptr) return 0;
  switch (usbdev::earlierOf(a, b)) {
    case usbdev::Earlier::second:
      return 1;
    case usbdev::Earlier::neither:
      return 2;
    default:
      return 0;
  }
}

int updateConflict(int channel, int value, int mode, int *profile) {
  if (!usbdev::isChannel(channel) || profile == nullptr) return -1;
  usbdev::HostAnswers host;
  int successor = usbdev::kNone;
  const bool done = usbdev::handOverConflict(host, channel, value, usbdev::handOverModeOf(mode), successor);
  *profile = successor == usbdev::kNone ? usbdev::kReportedForNone : successor;
  return done ? 0 : -1;
}

int getConflictCH(int channel, int *answers) {
  if (!usbdev::isChannel(channel) || answers == nullptr) return -1;
  usbdev::HostAnswers host;
  int found = usbdev::kNone;
  if (!usbdev::findConflict(host, channel, found)) return -1;
  if (found != usbdev::kNone) answers[channel] = found;
  return 0;
}

int syncConflict(int *states) {
  if (states == nullptr) return -1;
  usbdev::HostAnswers host;
  usbdev::ConflictTasks tasks;
  usbdev::takeTaskCodes(states, tasks);
  const bool done = usbdev::recomputeConflicts(host, tasks);
  usbdev::giveTaskCodes(tasks, states);
  return done ? 0 : -1;
}

int vl_get_available_dev(_availinfo *rows) { return rows != nullptr && usbdev::listUnassigned(rows) ? 0 : -1; }

int vl_get_available_dev_N_channel(_availinfo *rows, int profile) {
  const bool known = profile == usbdev::kNone || usbdev::isProfile(profile);
  return rows != nullptr && known && usbdev::listOfProfile(rows, profile) ? 0 : -1;
}

int vl_get_usbslot_video_cap(const char *usbslot, char *cap) {
  if (usbslot == nullptr || cap == nullptr) return -1;
  return usbdev::readSlotCodecs(usbslot, {cap, usbdev::kShortCodeSize}) ? 0 : -1;
}

int vl_get_usbslot_info(const char *usbslot, _streaminfo *info) {
  return usbslot != nullptr && info != nullptr && usbdev::readSlot(usbslot, *info) ? 0 : -1;
}

int vl_HOS_CLI_usbid(const char *usbslot) { return usbslot == nullptr ? -1 : usbdev::panelNumberOf(usbslot); }

int vl_find_HOS_model_pic(void) { return usbdev::hasModelPicture() ? 0 : -1; }

int vl_check_HOS_halvane_support(int *supported) {
  if (supported == nullptr) return -1;
  bool supports = false;
  const bool read = usbdev::readAddOnSupport(supports);
  *supported = supports ? 1 : 0;
  return read ? 0 : -1;
}
