#include <usbdev/web.h>

#include "web/link_ids.h"

int generate_ssid(char *out) {
  if (out != nullptr) usbdev::makeShareId({out, usbdev::kShareIdSize});
  return 0;
}

int generate_hash(char *out) {
  if (out != nullptr) usbdev::makeHash({out, usbdev::kHashSize});
  return 0;
}

int strip(char *in, char *out) {
  return in == nullptr || out == nullptr ? 0 : static_cast<int>(usbdev::strip(in, out));
}
