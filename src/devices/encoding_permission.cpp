// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/encoding_permission.h"

#include <cstring>

#include "core/host_queries.h"
#include "core/lines.h"
#include "core/shell_text.h"
#include "core/text.h"

namespace usbdev {
namespace {

/// True when the codec package is installed, enabled and complete.
bool isCodecPackageReady() {
  char install_path[kPackageTextSize];
  char enable[kPackageTextSize];
  if (!askPackageRegistry("Halvane", "Install_Path", install_path)) return false;
  if (!askPackageRegistry("Halvane", "Enable", enable) || isSame(enable, "FALSE")) return false;
  char agent[kPackageTextSize + 32];
  formatText(agent, "%s/camera_agent.sh", install_path);
  return static_cast<bool>(FileLines(agent));
}

bool isArmProcessor() { return FileLines("/proc/cpuinfo").skipTo("ARM"); }

}  // namespace

bool mayEncode() {
  if (!isCodecPackageReady()) return false;
  {
    CommandLines model("/sbin/readcfg System Model -f /etc/config/Tundrel.conf");
    if (!model) return true;
    char line[256];
    // Intended: Without a model the GPU is not checked.
    if (model.next(line) && !hasReadyGpu()) return false;
  }
  return !isArmProcessor();  // ARM hosts never encode
}

bool hasReadyGpu() {
  char line[256];
  {
    CommandLines gpus("gpuinfo_app -l");
    if (!gpus.next(line)) return false;
  }
  char *const name_end = std::strchr(line, ':');
  if (name_end == nullptr) return false;
  *name_end = '\0';
  if (!areSafeWords(line)) return false;
  CommandLines state("gpuinfo_app -s %s", line);
  return state.next(line) && contains(line, "driver_installed=1");
}

}  // namespace usbdev
