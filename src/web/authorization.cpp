#include "web/authorization.h"

#include <usbdev/web.h>

#include "core/text.h"

namespace usbdev {

bool formatAuthorization(Authorization &text, const char *user, const char *password) {
  char credentials[2 * kCredentialLength + 2];
  if (!formatText(credentials, "%s:%s", user, password)) return false;
  char encoded[sizeof text];
  return formatText(text, "Basic %s", Base64encs(credentials, encoded));
}

bool formatAuthorization(Authorization &text, const NasServer &server) {
  return isTerminated(server.user) && isTerminated(server.password) &&
         formatAuthorization(text, server.user, server.password);
}

}  // namespace usbdev

int getNVR_AUTH(const char *user, const char *password, char *out) {
  if (user == nullptr || password == nullptr || out == nullptr) return 0;
  usbdev::Authorization text;
  if (usbdev::formatAuthorization(text, user, password)) usbdev::copyCut(out, text, sizeof text - 1);
  return 0;
}
