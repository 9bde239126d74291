// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "operations.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <iterator>

namespace torture {

namespace {

constexpr char kEventLock[] = "/run/events.lock";

ShareLinkInfo linkOf(int profile) {
  ShareLinkInfo info{};
  info.profile = profile;
  info.shrenable = info.pwdenable = 1;
  return info;
}

}  // namespace

std::string portOf(int process) { return std::to_string(process + 1) + "-2"; }

int reportEvent(int process, bool plugged) {
  const int lock = open(kEventLock, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  flock(lock, LOCK_EX);
  _usbdev_des device{};
  device.devtype = 1;
  device.node = 90 + process;
  device.plugged = plugged ? 1 : 0;
  portOf(process).copy(device.usbslot, sizeof device.usbslot);
  std::string("Camera " + std::to_string(process)).copy(device.devname, sizeof device.devname);
  int profile = 0;
  int vnode = 0;
  char devname[256];
  _usbdev_conflict conflict;
  const int channel = mn_set_usbdev_hotplug(&device, &profile, devname, &vnode, &conflict);
  close(lock);
  return channel;
}

void Operations::next() {
  constexpr void (Operations::*kAll[])() = {
      &Operations::rename, &Operations::share,        &Operations::renewShare,    &Operations::store,
      &Operations::read,   &Operations::countTimeout, &Operations::plugAndUnplug,
  };
  (this->*kAll[random_() % std::size(kAll)])();
}

void Operations::rename() {
  expectSuccess(vl_set_profile_channelname(process_, ("Door " + std::to_string(random_())).c_str(), 0));
  ++done_.event_lines;
}

void Operations::share() {
  ShareLinkInfo info = linkOf(process_);
  std::to_string(random_()).copy(info.shrpwd, sizeof info.shrpwd - 1);
  expectSuccess(vl_set_share_link(&info));
}

void Operations::renewShare() {
  ShareLinkInfo info = linkOf(process_);
  expectSuccess(vl_renew_share_link(&info));
}

void Operations::store() {
  expectSuccess(mn_set_usbchn_sps(process_, static_cast<int>(random_() % 100)));
  expectSuccess(mn_update_pfstate(process_, 1));
}

void Operations::read() {
  _streaminfo stream;
  _usbdev_entry rows[10];
  expectSuccess(vl_get_stream_info(process_, &stream));
  expectSuccess(vl_get_devpf_list(rows));
  expectSuccess(rows[process_].profile == process_ ? 0 : -1);
}

void Operations::countTimeout() {
  expectSuccess(vl_add_shm_timeout_log(process_));
  ++done_.timeouts[process_];
}

/// Plugs it in first, as a process that was killed may have left it unplugged.
void Operations::plugAndUnplug() {
  for (const bool plugged : {true, false, true}) {
    expectSuccess(reportEvent(process_, plugged) == kProcesses + process_ ? 0 : -1);
  }
}

}  // namespace torture
