// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The sizes and offsets that callers were built against.
#include <usbdev/records.h>

#include <cstddef>

static_assert(sizeof(_usbdev_des) == 396 && offsetof(_usbdev_des, usbslot) == 8 &&
              offsetof(_usbdev_des, plugged) == 136 && offsetof(_usbdev_des, devname) == 140);
static_assert(sizeof(_usbres_des) == 132 && offsetof(_usbres_des, fps) == 12);
static_assert(sizeof(_usbfmt_des) == 4236 && offsetof(_usbfmt_des, res) == 12);
static_assert(sizeof(_usbdev_conflict) == 520 && offsetof(_usbdev_conflict, channel) == 512);
static_assert(sizeof(_usbdev_update) == 532 && offsetof(_usbdev_update, state) == 136 &&
              offsetof(_usbdev_update, slot_switch) == 396 && offsetof(_usbdev_update, hash) == 468);
static_assert(sizeof(_streaminfo) == 156 && offsetof(_streaminfo, vnode) == 28 &&
              offsetof(_streaminfo, framerate) == 56 && offsetof(_streaminfo, fetype) == 64 &&
              offsetof(_streaminfo, anode) == 80 && offsetof(_streaminfo, osdenable) == 112 &&
              offsetof(_streaminfo, vtag) == 140);
static_assert(sizeof(_availinfo) == 780 && offsetof(_availinfo, usbslot) == 264 && offsetof(_availinfo, vnode) == 648 &&
              offsetof(_availinfo, acodec) == 708 && offsetof(_availinfo, acap) == 760);
static_assert(sizeof(_usbdev_entry) == 884 && offsetof(_usbdev_entry, slot_switch) == 640 &&
              offsetof(_usbdev_entry, createtime) == 656 && offsetof(_usbdev_entry, vtag) == 800 &&
              offsetof(_usbdev_entry, hlspath) == 820);
static_assert(sizeof(_profile_info) == 776 && offsetof(_profile_info, vnode) == 648 &&
              offsetof(_profile_info, fetype) == 684 && offsetof(_profile_info, anode) == 700 &&
              offsetof(_profile_info, acap) == 760);
static_assert(sizeof(NasServer) == 264 && offsetof(NasServer, user) == 132 && offsetof(NasServer, password) == 197);
static_assert(sizeof(ShareLinkInfo) == 476 && offsetof(ShareLinkInfo, shrenable) == 260 &&
              offsetof(ShareLinkInfo, ssid) == 300 && offsetof(ShareLinkInfo, hash_string) == 412);
static_assert(sizeof(BndlInfo) == 260 && offsetof(BndlInfo, enabled) == 256);
