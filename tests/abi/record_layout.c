/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* Size and offsets of every record, as a C compiler lays them out. */
#include <platform/alsa_ctl.h>
#include <stddef.h>
#include <stdio.h>
#include <usbdev/records.h>

static int failures;

static void expect(const char *what, size_t actual, size_t expected) {
  if (actual == expected) return;
  fprintf(stderr, "%s: %zu instead of %zu\n", what, actual, expected);
  failures++;
}

#define RECORD(record, size) expect("size of " #record, sizeof(record), size)
#define FIELD(record, field, offset) expect(#record "." #field, offsetof(record, field), offset)

static void checkUsbdevDes(void) {
  RECORD(_usbdev_des, 396);
  FIELD(_usbdev_des, devtype, 0);
  FIELD(_usbdev_des, node, 4);
  FIELD(_usbdev_des, usbslot, 8);
  FIELD(_usbdev_des, plugged, 136);
  FIELD(_usbdev_des, devname, 140);
}

static void checkUsbresDes(void) {
  RECORD(_usbres_des, 132);
  FIELD(_usbres_des, width, 0);
  FIELD(_usbres_des, height, 4);
  FIELD(_usbres_des, fps_count, 8);
  FIELD(_usbres_des, fps, 12);
}

static void checkUsbfmtDes(void) {
  RECORD(_usbfmt_des, 4236);
  FIELD(_usbfmt_des, index, 0);
  FIELD(_usbfmt_des, codec, 4);
  FIELD(_usbfmt_des, res_count, 8);
  FIELD(_usbfmt_des, res, 12);
}

static void checkUsbdevConflict(void) {
  RECORD(_usbdev_conflict, 520);
  FIELD(_usbdev_conflict, profilename, 0);
  FIELD(_usbdev_conflict, devname, 256);
  FIELD(_usbdev_conflict, channel, 512);
  FIELD(_usbdev_conflict, profile, 516);
}

static void checkUsbdevUpdate(void) {
  RECORD(_usbdev_update, 532);
  FIELD(_usbdev_update, vnode, 0);
  FIELD(_usbdev_update, anode, 4);
  FIELD(_usbdev_update, usbslot, 8);
  FIELD(_usbdev_update, state, 136);
  FIELD(_usbdev_update, devname, 140);
  FIELD(_usbdev_update, slot_switch, 396);
  FIELD(_usbdev_update, profile, 400);
  FIELD(_usbdev_update, hlspath, 404);
  FIELD(_usbdev_update, hash, 468);
}

static void checkStreaminfo(void) {
  RECORD(_streaminfo, 156);
  FIELD(_streaminfo, header, 0);
  FIELD(_streaminfo, channel, 16);
  FIELD(_streaminfo, stream_type, 20);
  FIELD(_streaminfo, slot_switch, 24);
  FIELD(_streaminfo, vnode, 28);
  FIELD(_streaminfo, vprofile, 32);
  FIELD(_streaminfo, vcodec, 36);
  FIELD(_streaminfo, venable, 40);
  FIELD(_streaminfo, spsstate, 44);
  FIELD(_streaminfo, width, 48);
  FIELD(_streaminfo, height, 52);
  FIELD(_streaminfo, framerate, 56);
  FIELD(_streaminfo, reserved1, 60);
  FIELD(_streaminfo, fetype, 64);
  FIELD(_streaminfo, anode, 80);
  FIELD(_streaminfo, aprofile, 84);
  FIELD(_streaminfo, acodec, 88);
  FIELD(_streaminfo, aenable, 92);
  FIELD(_streaminfo, samplerate, 96);
  FIELD(_streaminfo, channelno, 100);
  FIELD(_streaminfo, bitrate, 104);
  FIELD(_streaminfo, volume, 108);
  FIELD(_streaminfo, osdenable, 112);
  FIELD(_streaminfo, reserved2, 116);
  FIELD(_streaminfo, flip, 128);
  FIELD(_streaminfo, mirror, 132);
  FIELD(_streaminfo, ldspoutput, 136);
  FIELD(_streaminfo, vtag, 140);
}

static void checkAvailinfo(void) {
  RECORD(_availinfo, 780);
  FIELD(_availinfo, reserved1, 0);
  FIELD(_availinfo, stream_type, 4);
  FIELD(_availinfo, reserved2, 8);
  FIELD(_availinfo, usbslot, 264);
  FIELD(_availinfo, devname, 392);
  FIELD(_availinfo, vnode, 648);
  FIELD(_availinfo, reserved3, 652);
  FIELD(_availinfo, vcodec, 656);
  FIELD(_availinfo, reserved4, 660);
  FIELD(_availinfo, width, 668);
  FIELD(_availinfo, height, 672);
  FIELD(_availinfo, framerate, 676);
  FIELD(_availinfo, reserved5, 680);
  FIELD(_availinfo, fetype, 684);
  FIELD(_availinfo, reserved6, 700);
  FIELD(_availinfo, acodec, 708);
  FIELD(_availinfo, aenable, 712);
  FIELD(_availinfo, reserved7, 716);
  FIELD(_availinfo, volume, 728);
  FIELD(_availinfo, osdenable, 732);
  FIELD(_availinfo, reserved8, 736);
  FIELD(_availinfo, flip, 748);
  FIELD(_availinfo, mirror, 752);
  FIELD(_availinfo, ldspoutput, 756);
  FIELD(_availinfo, acap, 760);
  FIELD(_availinfo, reserved9, 776);
}

static void checkUsbdevEntry(void) {
  RECORD(_usbdev_entry, 884);
  FIELD(_usbdev_entry, profilename, 0);
  FIELD(_usbdev_entry, usbslot, 256);
  FIELD(_usbdev_entry, devname, 384);
  FIELD(_usbdev_entry, slot_switch, 640);
  FIELD(_usbdev_entry, stream_type, 644);
  FIELD(_usbdev_entry, exists, 648);
  FIELD(_usbdev_entry, conflictch, 652);
  FIELD(_usbdev_entry, createtime, 656);
  FIELD(_usbdev_entry, profile, 784);
  FIELD(_usbdev_entry, vcodec, 788);
  FIELD(_usbdev_entry, mjpeg, 792);
  FIELD(_usbdev_entry, aenable, 796);
  FIELD(_usbdev_entry, vtag, 800);
  FIELD(_usbdev_entry, shrenable, 816);
  FIELD(_usbdev_entry, hlspath, 820);
}

static void checkProfileInfo(void) {
  RECORD(_profile_info, 776);
  FIELD(_profile_info, exists, 0);
  FIELD(_profile_info, stream_type, 4);
  FIELD(_profile_info, profilename, 8);
  FIELD(_profile_info, usbslot, 264);
  FIELD(_profile_info, devname, 392);
  FIELD(_profile_info, vnode, 648);
  FIELD(_profile_info, vprofile, 652);
  FIELD(_profile_info, vcodec, 656);
  FIELD(_profile_info, venable, 660);
  FIELD(_profile_info, spsstate, 664);
  FIELD(_profile_info, width, 668);
  FIELD(_profile_info, height, 672);
  FIELD(_profile_info, framerate, 676);
  FIELD(_profile_info, reserved1, 680);
  FIELD(_profile_info, fetype, 684);
  FIELD(_profile_info, anode, 700);
  FIELD(_profile_info, aprofile, 704);
  FIELD(_profile_info, acodec, 708);
  FIELD(_profile_info, aenable, 712);
  FIELD(_profile_info, samplerate, 716);
  FIELD(_profile_info, channelno, 720);
  FIELD(_profile_info, bitrate, 724);
  FIELD(_profile_info, volume, 728);
  FIELD(_profile_info, osdenable, 732);
  FIELD(_profile_info, reserved2, 736);
  FIELD(_profile_info, flip, 748);
  FIELD(_profile_info, mirror, 752);
  FIELD(_profile_info, ldspoutput, 756);
  FIELD(_profile_info, acap, 760);
}

static void checkNasServer(void) {
  RECORD(NasServer, 264);
  FIELD(NasServer, host, 0);
  FIELD(NasServer, port, 128);
  FIELD(NasServer, user, 132);
  FIELD(NasServer, password, 197);
}

static void checkShareLinkInfo(void) {
  RECORD(ShareLinkInfo, 476);
  FIELD(ShareLinkInfo, profile, 0);
  FIELD(ShareLinkInfo, profilename, 4);
  FIELD(ShareLinkInfo, shrenable, 260);
  FIELD(ShareLinkInfo, pwdenable, 264);
  FIELD(ShareLinkInfo, shrpwd, 268);
  FIELD(ShareLinkInfo, ssid, 300);
  FIELD(ShareLinkInfo, token, 348);
  FIELD(ShareLinkInfo, hash_string, 412);
}

static void checkBndlInfo(void) {
  RECORD(BndlInfo, 260);
  FIELD(BndlInfo, version, 0);
  FIELD(BndlInfo, build, 64);
  FIELD(BndlInfo, install_path, 128);
  FIELD(BndlInfo, enabled, 256);
}

static void checkAcardInfo(void) {
  RECORD(_acard_info, 268);
  FIELD(_acard_info, entry_count, 0);
  FIELD(_acard_info, channel_mode, 4);
  FIELD(_acard_info, channel_count, 8);
  FIELD(_acard_info, name, 12);
}

int main(void) {
  checkUsbdevDes();
  checkUsbresDes();
  checkUsbfmtDes();
  checkUsbdevConflict();
  checkUsbdevUpdate();
  checkStreaminfo();
  checkAvailinfo();
  checkUsbdevEntry();
  checkProfileInfo();
  checkNasServer();
  checkShareLinkInfo();
  checkBndlInfo();
  checkAcardInfo();
  return failures;
}
