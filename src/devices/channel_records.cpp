// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/channel_records.h"

#include <cstdlib>
#include <cstring>

namespace usbdev {
namespace {

constexpr float kUsualRate = 30;

// Keys that some records read with another default.
constexpr IntKey orElse(const IntKey &key, int otherwise) { return {key.key, key.sub_key, otherwise}; }
constexpr IntKey kSlotSwitchOn = orElse(keys::slot_switch, 1);
// Intended: Audio that was never stored is off here.
constexpr IntKey kAudioOff = orElse(keys::aenable, 0);

/// A number of a record and the key that fills it.
template <typename Record>
struct Number {
  int Record::*field;
  const IntKey &key;
};

template <typename Record, std::size_t N>
void preset(const Number<Record> (&numbers)[N], Record &record) {
  for (const Number<Record> &number : numbers) record.*number.field = number.key.usual_default;
}

template <typename Record, std::size_t N>
void read(const Number<Record> (&numbers)[N], const Section &channel, Record &record) {
  for (const Number<Record> &number : numbers) record.*number.field = channel.get(number.key);
}

constexpr Number<_availinfo> kAvailable[] = {
    {&_availinfo::vnode, keys::vnode},
    {&_availinfo::vcodec, keys::vcodec},
    {&_availinfo::width, keys::width},
    {&_availinfo::height, keys::height},
    {&_availinfo::acodec, keys::acodec},
    {&_availinfo::aenable, keys::aenable},
    {&_availinfo::volume, keys::volume},
    {&_availinfo::osdenable, keys::osdenable},
    {&_availinfo::flip, keys::flip},
    {&_availinfo::mirror, keys::mirror},
    {&_availinfo::ldspoutput, keys::ldspoutput},
};

// Preset and read by both readers of _streaminfo.
constexpr Number<_streaminfo> kStream[] = {
    {&_streaminfo::vnode, keys::vnode},         {&_streaminfo::vcodec, keys::vcodec},
    {&_streaminfo::venable, keys::venable},     {&_streaminfo::spsstate, keys::spsstate},
    {&_streaminfo::width, keys::width},         {&_streaminfo::height, keys::height},
    {&_streaminfo::anode, keys::anode},         {&_streaminfo::acodec, keys::acodec},
    {&_streaminfo::aenable, kAudioOff},         {&_streaminfo::samplerate, keys::samplerate},
    {&_streaminfo::channelno, keys::channelno}, {&_streaminfo::bitrate, keys::bitrate},
    {&_streaminfo::volume, keys::volume},
};

// Preset by both, read for a port; the reader of a profile knows them.
constexpr Number<_streaminfo> kSlotStream[] = {
    {&_streaminfo::slot_switch, kSlotSwitchOn},
    {&_streaminfo::vprofile, keys::profile},
    {&_streaminfo::aprofile, keys::profile},
};

// Read by both, preset for a profile.
constexpr Number<_streaminfo> kPicture[] = {
    {&_streaminfo::osdenable, keys::osdenable},
    {&_streaminfo::flip, keys::flip},
    {&_streaminfo::mirror, keys::mirror},
    {&_streaminfo::ldspoutput, keys::ldspoutput},
};

constexpr Number<_profile_info> kProfile[] = {
    {&_profile_info::vnode, keys::vnode},         {&_profile_info::vcodec, keys::vcodec},
    {&_profile_info::width, keys::width},         {&_profile_info::height, keys::height},
    {&_profile_info::acodec, keys::acodec},       {&_profile_info::samplerate, keys::samplerate},
    {&_profile_info::bitrate, keys::bitrate},     {&_profile_info::volume, keys::volume},
    {&_profile_info::osdenable, keys::osdenable}, {&_profile_info::flip, keys::flip},
    {&_profile_info::mirror, keys::mirror},       {&_profile_info::ldspoutput, keys::ldspoutput},
};

// Preset, and never read.
constexpr Number<_profile_info> kProfilePresets[] = {
    {&_profile_info::vprofile, keys::profile},    {&_profile_info::venable, keys::venable},
    {&_profile_info::spsstate, keys::spsstate},   {&_profile_info::anode, keys::anode},
    {&_profile_info::aprofile, keys::profile},    {&_profile_info::aenable, kAudioOff},
    {&_profile_info::channelno, keys::channelno},
};

constexpr Number<_usbdev_entry> kRow[] = {
    {&_usbdev_entry::slot_switch, kSlotSwitchOn},
    {&_usbdev_entry::exists, keys::exists},
    {&_usbdev_entry::conflictch, keys::conflictch},
    {&_usbdev_entry::profile, keys::profile},
};

void presetStream(_streaminfo &info) {
  preset(kStream, info);
  preset(kSlotStream, info);
  info.framerate = kUsualRate;
}

void readStream(const Section &channel, _streaminfo &info) {
  read(kStream, channel, info);
  read(kPicture, channel, info);
  info.framerate = readRate(channel);
  channel.get(keys::fetype, info.fetype);
}

}  // namespace

float readRate(const Section &channel) {
  char text[16];
  channel.get(keys::framerate, text);
  return static_cast<float>(std::atof(text));
}

void readAvailable(const Section &channel, _availinfo &row) {
  read(kAvailable, channel, row);
  row.framerate = readRate(channel);
  channel.get(keys::usbslot, row.usbslot);
  channel.get(keys::devname, row.devname);
  channel.get(keys::fetype, row.fetype);
  channel.get(keys::acap, row.acap);
}

void presetSlotStream(_streaminfo &info) {
  presetStream(info);
  // Intended: Only four bytes of the type are preset.
  std::memset(info.fetype, 0, 4);
}

void readSlotStream(const Section &channel, _streaminfo &info) {
  readStream(channel, info);
  read(kSlotStream, channel, info);
}

void presetProfileStream(_streaminfo &info) {
  presetStream(info);
  preset(kPicture, info);
  std::memset(info.fetype, 0, sizeof info.fetype);
  std::memset(info.vtag, 0, sizeof info.vtag);
}

void readProfileStream(const Section &channel, _streaminfo &info) {
  readStream(channel, info);
  channel.get(keys::vtag, info.vtag);
}

void presetProfile(_profile_info &info) {
  info = {};
  info.exists = -1;
  preset(kProfile, info);
  preset(kProfilePresets, info);
  info.framerate = kUsualRate;
}

void readProfile(const Section &channel, _profile_info &info) {
  read(kProfile, channel, info);
  info.exists = channel.get(keys::exists);
  info.aenable = channel.get(keys::aenable);
  info.framerate = readRate(channel);
  channel.get(keys::profilename, info.profilename);
  channel.get(keys::usbslot, info.usbslot);
  channel.get(keys::devname, info.devname);
  channel.get(keys::fetype, info.fetype);
  channel.get(keys::acap, info.acap);
}

void readProfileRow(const Section &channel, _usbdev_entry &row) {
  read(kRow, channel, row);
  channel.get(keys::profilename, row.profilename);
  channel.get(keys::usbslot, row.usbslot);
  channel.get(keys::devname, row.devname);
  channel.get(keys::createtime, row.createtime);
}

void readDeviceRow(const Section &channel, _usbdev_entry &row) {
  readProfileRow(channel, row);
  row.aenable = channel.get(keys::aenable);
  row.shrenable = channel.get(keys::shrenable);
}

void addVideoToRow(const Section &channel, _usbdev_entry &row) {
  row.vcodec = static_cast<int>(channel.get(keys::vcodec));
  row.shrenable = channel.get(keys::shrenable);
  channel.get(keys::vtag, row.vtag);
  channel.get(keys::hlspath, row.hlspath);
}

}  // namespace usbdev
