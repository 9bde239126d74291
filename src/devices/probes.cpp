// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/probes.h"

#include <cstring>

#include "core/channel_keys.h"
#include "core/lines.h"
#include "core/shell_text.h"
#include "core/text.h"

namespace usbdev {

int panelNumberOf(const char *usbslot) {
  if (!isSafeInSingleQuotes(usbslot) || std::strlen(usbslot) > 127) return kNone;
  CommandLines answer("hwinfo_app --usb_get_port_id value='%s'", usbslot);
  char line[256];
  return answer.next(line) ? toInt(line) : kNone;
}

bool hasModelPicture() {
  return FileLines("/home/httpd/v3_menu/layout/model_0.svg") || FileLines("/home/httpd/v3_menu/layout/model_1.svg");
}

bool readAddOnSupport(bool &supported) {
  supported = false;
  FileLines state("/tmp/gpuinfo.type");
  if (!state) return false;
  char line[256];
  if (!state.next(line)) return true;
  const char *const declared = std::strstr(line, "support=");
  if (declared == nullptr) return false;
  supported = toInt(declared + std::strlen("support=")) != 0;
  return true;
}

}  // namespace usbdev
