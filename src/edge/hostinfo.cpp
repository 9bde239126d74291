// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/hostinfo.h>

#include "core/profile_mapping.h"
#include "hostinfo/host_information.h"
#include "hostinfo/timeout_log.h"

namespace {

constexpr std::size_t kVersionSize = 256;

int resultOf(usbdev::HostSetting setting) { return setting == usbdev::HostSetting::unreadable ? -1 : 0; }

}  // namespace

int vl_get_nas_HTTPport(int *port) { return port == nullptr ? -1 : resultOf(usbdev::readWebPort(*port)); }

int vl_get_nas_version(char *version) {
  return version == nullptr ? -1 : resultOf(usbdev::readHostVersion({version, kVersionSize}));
}

int vl_get_bndl_info(const char *package, BndlInfo *info) {
  if (package != nullptr && info != nullptr) usbdev::readPackage(package, *info);
  return 0;
}

int vl_create_log_shm(void) { return usbdev::findTimeoutCounters(); }

void *vl_attach_log_shm(int id) { return usbdev::attachTimeoutCounters(id); }

void vl_log_shm_init(void *address) {
  if (address != nullptr) usbdev::clearTimeoutCounters(address);
}

int vl_add_shm_timeout_log(int index) { return usbdev::isProfile(index) && usbdev::countTimeout(index) ? 0 : -1; }
