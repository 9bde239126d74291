// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The caller's records as text, and their bytes before a call.
#pragma once

#include <usbdev/records.h>

#include <cstring>
#include <sstream>
#include <string>

namespace contract {

template <typename Record>
Record untouched() {
  Record record;
  memset(static_cast<void *>(&record), 0x5A, sizeof record);
  return record;
}

template <typename Record>
Record zeroed() {
  Record record;
  memset(static_cast<void *>(&record), 0, sizeof record);
  return record;
}

template <typename Record>
bool isSameRecord(const Record &a, const Record &b) {
  return memcmp(&a, &b, sizeof a) == 0;
}

// "node 5 profile 2 codec 0 enable 1 sps 1 1920x1080@15 fetype 7", of _streaminfo and _profile_info.
template <typename Record>
std::string videoText(const Record &r) {
  std::ostringstream text;
  text << "node " << r.vnode << " profile " << r.vprofile << " codec " << r.vcodec << " enable " << r.venable << " sps "
       << r.spsstate << " " << r.width << "x" << r.height << "@" << r.framerate << " fetype " << r.fetype;
  return text.str();
}

// "osd 0 flip 1 mirror 2 ldsp 3", of every one of them.
template <typename Record>
std::string pictureText(const Record &r) {
  std::ostringstream text;
  text << "osd " << r.osdenable << " flip " << r.flip << " mirror " << r.mirror << " ldsp " << r.ldspoutput;
  return text.str();
}

// "node 3 profile 2 codec 1 enable 6 48000 Hz 2 ch 96000 bit/s volume 80", of _streaminfo and _profile_info.
template <typename Record>
std::string audioText(const Record &r) {
  std::ostringstream text;
  text << "node " << r.anode << " profile " << r.aprofile << " codec " << r.acodec << " enable " << r.aenable << " "
       << r.samplerate << " Hz " << r.channelno << " ch " << r.bitrate << " bit/s volume " << r.volume;
  return text.str();
}

// What the records show where nothing is stored.
inline constexpr char kPresetVideo[] = "node -1 profile -1 codec 1 enable 0 sps 0 1280x720@30 fetype ";
inline constexpr char kPresetAudio[] = "node -1 profile -1 codec 0 enable 0 8000 Hz 1 ch 64000 bit/s volume 50";
inline constexpr char kPresetPicture[] = "osd 1 flip 0 mirror 0 ldsp 0";

}  // namespace contract
