// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/config.h"

#include <platform/xmlcfg.h>

#include <cstdio>
#include <cstring>

#include "core/fair_lock.h"

namespace usbdev {
namespace {

constexpr char kChannelFile[] = "/etc/config/usbdev.conf";
constexpr char kProfileStateFile[] = "/etc/config/vl_pfstate.conf";
constexpr char kRoot[] = "velmora";
FairLock config_lock;

void reportOpenFailed(OpenFailure failure, const char *path, int result) {
  if (failure == OpenFailure::silent) return;
  const char *what = "open:";
  if (failure == OpenFailure::read) what = "open read ";
  if (failure == OpenFailure::write) what = "open write ";
  std::fprintf(stderr, "%s[%s] failed, ret: %d\n", what, path, result);
}

}  // namespace

ConfigSession::ConfigSession(Mode mode, const char *path, OpenFailure failure) : OpenConfig(nullptr) {
  config_lock.take();
  result_ = xmlcfg_open(static_cast<int>(mode), path, &handle_);
  if (!*this) reportOpenFailed(failure, path, result_);
}

ConfigSession::~ConfigSession() { end(); }

int ConfigSession::end() {
  if (ended_) return 0;
  ended_ = true;
  const int closed = *this ? xmlcfg_close(handle_, 0) : 0;
  config_lock.release();
  return closed;
}

ConfigReader::ConfigReader(OpenFailure failure) : ConfigSession(Mode::read, kChannelFile, failure) {}

ConfigWriter::ConfigWriter(OpenFailure failure) : WriteSession(kChannelFile, failure) {}

ProfileStateWriter::ProfileStateWriter() : WriteSession(kProfileStateFile, OpenFailure::usual) {}

bool WriteSession::save() {
  const int closed = end();
  if (closed < 0) std::fprintf(stderr, "close:[%s] failed, ret: %d\n", path_, closed);
  return closed >= 0;
}

const char *channelName(int channel) {
  static constexpr char kNames[kChannels][4] = {"ch0", "ch1", "ch2", "ch3", "ch4", "ch5", "ch6", "ch7", "ch8", "ch9"};
  return kNames[channel];
}

int Section::get(const IntKey &key) const { return get(key, key.usual_default); }

int Section::get(const IntKey &key, int otherwise) const {
  return xmlcfg_get_int(handle_, otherwise, kRoot, name_, key.key, key.sub_key);
}

void Section::getText(const TextPath &key, char *out) const {
  std::memset(out, 0, static_cast<std::size_t>(key.size));
  xmlcfg_get_str(handle_, key.usual_default, out, key.size, kRoot, name_, key.key, key.sub_key);
  out[key.size - 1] = '\0';  // the host library may fill all bytes
}

void Section::set(const IntKey &key, int value) const {
  xmlcfg_set_int(handle_, value, kRoot, name_, key.key, key.sub_key);
}

void Section::set(const TextPath &key, const char *value) const {
  xmlcfg_set_str(handle_, value, kRoot, name_, key.key, key.sub_key);
}

}  // namespace usbdev
