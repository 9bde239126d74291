#include <usbdev/devices.h>

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
}  // namespace usbdev

int check_gpu_status(int *result) {
  if (result == nullptr) return 0;
  *result = 0;
  char line[256];
  {
    usbdev::CommandLines gpus("gpuinfo_app -l");
    if (!gpus.next(line)) return 0;
  }
  char *const name_end = std::strchr(line, ':');
  if (name_end == nullptr) return 0;
  *name_end = '\0';
  if (!usbdev::areSafeWords(line)) return 0;
  usbdev::CommandLines state("gpuinfo_app -s %s", line);
  if (state.next(line) && usbdev::contains(line, "driver_installed=1")) *result = 1;
  return 0;
}

int validate_hwenc(int *result) {
  if (result == nullptr) return 0;
  *result = usbdev::isCodecPackageReady() ? 1 : 0;
  if (*result == 0) return 0;
  {
    usbdev::CommandLines model("/sbin/readcfg System Model -f /etc/config/Tundrel.conf");
    if (!model) return 0;
    char line[256];
    if (model.next(line)) check_gpu_status(result);
  }
  if (*result == 1 && usbdev::isArmProcessor()) *result = 0;  // ARM hosts never encode
  return 0;
}
