// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Logins and sessions at the host's own web server. Each makes the path of its request.
#pragma once

#include <usbdev/records.h>

#include "web/http_client.h"

namespace usbdev {

/// A session's identifier.
using SessionId = char[128];

/// Logs in with the server's user and password.
bool login(RequestPath &path, const NasServer &server, SessionId &sid);

/// Ends a session; `reply_size` is that of the server's answer.
bool logout(RequestPath &path, const NasServer &server, const char *sid, int &reply_size);

bool isSessionValid(RequestPath &path, const NasServer &server, const char *sid);

/// Finds the session in the reply to a login.
bool findSession(const char *reply, SessionId &sid);

/// Does the host accept a user? Logs in and out again and reports on the standard streams.
bool hostAcceptsUser(RequestPath &path, const char *user, const char *password);

bool hostKnowsSession(RequestPath &path, const char *sid);

}  // namespace usbdev
