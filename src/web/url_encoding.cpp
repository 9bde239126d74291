#include <usbdev/web.h>

#include <cstring>

namespace usbdev {
namespace {

/// What a character of the query part is written as; null when as itself.
const char *escapeOf(char c) {
  switch (c) {
    case '/':
      return "%2F";
    case '~':
      return "%7E";
    case ' ':
      return "%20";
    default:
      return nullptr;
  }
}

}  // namespace
}  // namespace usbdev

int url_encode(char *out, const char *in, int len) {
  if (out == nullptr || in == nullptr) return 0;
  bool in_query = false;
  for (int i = 0; i < len; ++i) {
    const char *const escape = in_query ? usbdev::escapeOf(in[i]) : nullptr;
    if (escape != nullptr) {
      std::memcpy(out, escape, 3);
      out += 3;
    } else {
      *out++ = in[i];
    }
    in_query = in_query || in[i] == '?';
  }
  return 0;
}
