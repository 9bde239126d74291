#include <usbdev/devices.h>

#include "core/lines.h"
#include "core/shell_text.h"
#include "core/text.h"

int vl_HOS_CLI_usbid(const char *usbslot) {
  if (usbslot == nullptr || !usbdev::isSafeInSingleQuotes(usbslot) || std::strlen(usbslot) > 127) return -1;
  usbdev::CommandLines answer("hwinfo_app --usb_get_port_id value='%s'", usbslot);
  char line[256];
  return answer.next(line) ? usbdev::toInt(line) : -1;
}

int vl_find_HOS_model_pic(void) {
  if (usbdev::FileLines("/home/httpd/v3_menu/layout/model_0.svg")) return 0;
  if (usbdev::FileLines("/home/httpd/v3_menu/layout/model_1.svg")) return 0;
  return -1;
}

int vl_check_HOS_halvane_support(int *supported) {
  if (supported == nullptr) return -1;
  *supported = 0;
  usbdev::FileLines state("/tmp/gpuinfo.type");
  if (!state) return -1;
  char line[256];
  if (!state.next(line)) return 0;
  const char *const declared = std::strstr(line, "support=");
  if (declared == nullptr) return -1;
  if (usbdev::toInt(declared + std::strlen("support=")) != 0) *supported = 1;
  return 0;
}
