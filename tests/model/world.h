// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A plain model of what the library does: ten channels, a host, and one function for each exported one, with its name,
// its arguments and its result. It has no file, no lock and no command, and each function is written as its header
// describes it, so that a difference from the library is a mistake in one of the two.
#pragma once

#include <usbdev/records.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "channel.h"
#include "devices.h"

namespace model {

class World {
 public:
  Host host;
  Channel channels[USBDEV_CHANNELS];
  std::map<std::string, int> available;  // "pf3/available" -> 1
  unsigned timeouts[USBDEV_PROFILES] = {};
  std::set<std::string> links;  // names of the symbolic links

  // What the host gives to the next operation: the moment, and the share id.
  std::string now = "2024-03-05 08:15:00";
  std::string next_ssid = "00000001";
  // The n-th hash that is made; the first is 1.
  static std::string hashNumber(int n);

  // What was done to the host besides storing, in order: "log 0 TEXT", "exec /bin/rm -rf PATH", "volume CARD VALUE";
  // and the datagrams that were sent.
  std::vector<std::string> done;
  std::vector<std::string> sent;

  // --- core.h
  int trsProfiletoPlugCh(int profile, int *channel) const;
  int vl_getDevName(int profile, char *name) const;

  // --- devices.h
  int mn_get_usbchn_fmts(int vnode, _usbfmt_des *table, int *over60) const;
  int chkconflict(char *other_slot, const char *slot, bool on_bridge, int other_vnode, const char *bridge_path) const;
  static int isElderPf(const char *a, const char *b);
  int updateConflict(int channel, int value, int mode, int *profile);
  int getConflictCH(int channel, int *answers) const;
  int syncConflict(int *states);
  int vl_get_available_dev(_availinfo *rows) const;
  int vl_get_available_dev_N_channel(_availinfo *rows, int profile) const;
  int vl_get_usbslot_video_cap(const char *usbslot, char *cap) const;
  int vl_get_usbslot_info(const char *usbslot, _streaminfo *info) const;

  // --- hotplug.h
  int mn_set_usbdev_hotplug(_usbdev_des *device, int *profile, char *devname, int *vnode, _usbdev_conflict *conflict);
  int vl_set_devpf_list();
  int check_halvane();
  int mn_sync_usbdev_conf();
  int mn_set_usbchn_sps(int profile, int value);
  int mn_set_usbdev_volume(int profile);

  // --- profiles.h
  int vl_chk_usbdev_profile(const char *usbslot, int profile, int *unassigned) const;
  int vl_set_usbchn_profile(char *usbslot, int profile);
  int vl_clear_usbchn_profile(int profile, const char *client_ip, int event_code);
  int vl_set_profile_channelname(int profile, const char *name, int event_code);
  int vl_set_usbchn_stream(int profile, _streaminfo *new_info, const _streaminfo *old_info, int event_code);
  int findclosedFPS(int profile, const _streaminfo *request, float *chosen_fps) const;
  int vl_set_usbslot_switch(const char *usbslot, const char *state, const char *client_ip);
  int vl_get_available_profile(char *out) const;
  int vl_get_usbdev_list(char *out) const;
  int vl_get_devpf_list(_usbdev_entry *rows) const;
  int vl_get_profile_list(_usbdev_entry *rows) const;
  int vl_get_usbchn_cap(int profile, _usbfmt_des *table) const;
  int vl_get_profile_video_cap(int profile, char *cap) const;
  int vl_get_usbchn_audio_cap(int profile, char *cap) const;
  int vl_get_profile_info(int profile, _profile_info *info) const;
  int vl_get_profileID(int channel) const;
  int vl_get_stream_info(int profile, _streaminfo *info) const;

  // --- web.h
  int vl_set_share_link(ShareLinkInfo *info);
  int vl_get_share_link(ShareLinkInfo *info) const;
  int vl_renew_share_link(ShareLinkInfo *info);
  int remove_hash_link(const char *section);
  int vl_check_share_link_ssid(const char *ssid) const;
  int vl_validate_chliveview(int profile, int *code) const;
  int vl_ssid_auth(const char *ssid, const char *token, int *profile, int *code) const;
  int mn_update_pfstate(int profile, int value);
  int vl_get_pidvid(int profile, char *pidvid) const;

  // --- hostinfo.h
  int vl_add_shm_timeout_log(int index);

 private:
  struct Choice {
    int channel = -1;
    bool exact = false;  // the device is the one that the channel knows
    int replaced = -1;   // the channel whose camera another one has displaced
  };
  struct Successor;
  struct Findings;
  struct Present;

  int channelOf(int profile) const;         // -1 = none
  int capableChannelOf(int profile) const;  // the same, of one that is there and switched on
  bool isOver60(int vnode) const;
  std::string capOf(int vnode) const;

  bool conflicts(const std::string &other_slot, const std::string &slot, const std::string &bridge,
                 int other_vnode) const;
  std::vector<int> waitingFor(int channel) const;
  Successor chooseSuccessor(const std::vector<int> &waiting, int mode) const;
  void park(const Successor &successor);

  Choice choosePlugged(_usbdev_des *device, int *profile) const;
  Choice chooseRemoved(const _usbdev_des &device, int *profile, char *devname, int *vnode) const;
  int switchStateOf(const std::string &slot) const;
  Findings examine(const _usbdev_des &device, int chosen, _usbdev_conflict *report);
  void report(const Findings &findings, int chosen, _usbdev_conflict *report) const;
  void storePlugged(const _usbdev_des &device, const Choice &choice, const Findings &findings, int slot_switch);
  void storeRemoved(int channel);

  void scanCameras(Present *present) const;
  void scanCards(Present *present) const;
  void storePresent(const Present &present);
  void linkPresent(Channel *channel, const Channel &before, int profile);

  void logStream(int profile, const _streaminfo &new_info, const _streaminfo &old_info, float rate, int event_code);
  bool storeVideo(Channel *channel, const _streaminfo &new_info, const _streaminfo &old_info, float rate);
  bool storeAudio(Channel *channel, const _streaminfo &new_info, const _streaminfo &old_info);

  std::string newHash() { return hashNumber(++hashes_); }
  void addLink(int profile, const std::string &name);
  void removeLink(const std::string &name);
  void log(int level, const std::string &text) { done.push_back("log " + std::to_string(level) + " " + text); }
  void notify(int event, int profile, int video, int audio, int flag, int target,
              const std::string &header = std::string(16, '\0'));

  int hashes_ = 0;
};

}  // namespace model
