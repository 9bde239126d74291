// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A host that may encode H.264 in hardware.
#pragma once

#include <string>

#include "host.h"

namespace contract {

inline constexpr char kAgentFile[] = "/share/Halvane/camera_agent.sh";
inline constexpr char kModelCommand[] = "/sbin/readcfg System Model -f /etc/config/Tundrel.conf";
inline constexpr char kGpuListCommand[] = "gpuinfo_app -l";
inline constexpr char kGpuStateCommand[] = "gpuinfo_app -s GPU0";

inline void allowEncoding(Host &host) {
  host.package("Halvane", "Install_Path", "/share/Halvane");
  host.package("Halvane", "Enable", "TRUE");
  host.files.write(kAgentFile, "#!/bin/sh\n");
  host.commands.prints(kModelCommand, "TS-873\n");
  host.commands.prints(kGpuListCommand, "GPU0: 01:00.0 VGA\nGPU1: 02:00.0 VGA\n");
  host.commands.prints(kGpuStateCommand, "driver_installed=1\n");
  host.files.write("/proc/cpuinfo", "processor\t: 0\nvendor_id\t: GenuineIntel\n");
}

}  // namespace contract
