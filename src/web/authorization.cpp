// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/authorization.h"

#include "core/text.h"
#include "web/base64.h"

namespace usbdev {

bool formatAuthorization(Authorization &text, const char *user, const char *password) {
  char credentials[2 * kCredentialLength + 2];
  if (!formatText(credentials, "%s:%s", user, password)) return false;
  char encoded[base64Size(sizeof credentials - 1)];
  encodeBase64(credentials, encoded);
  return formatText(text, "Basic %s", encoded);
}

bool formatAuthorization(Authorization &text, const NasServer &server) {
  return isTerminated(server.user) && isTerminated(server.password) &&
         formatAuthorization(text, server.user, server.password);
}

}  // namespace usbdev
