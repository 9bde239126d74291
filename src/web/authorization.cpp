#include "web/authorization.h"

#include <usbdev/web.h>

#include <cstring>

#include "core/text.h"

namespace usbdev {
namespace {

bool isCredential(const char *text) { return strnlen(text, kCredentialLength + 1) <= kCredentialLength; }

}  // namespace

bool formatAuthorization(Authorization &text, const char *user, const char *password) {
  if (!isCredential(user) || !isCredential(password)) return false;
  char credentials[2 * kCredentialLength + 2];
  formatText(credentials, "%s:%s", user, password);
  char encoded[sizeof text];
  return formatText(text, "Basic %s", Base64encs(credentials, encoded));
}

}  // namespace usbdev

int getNVR_AUTH(const char *user, const char *password, char *out) {
  if (user == nullptr || password == nullptr || out == nullptr) return 0;
  usbdev::Authorization text;
  if (usbdev::formatAuthorization(text, user, password)) usbdev::copyCut(out, text, sizeof text - 1);
  return 0;
}
