// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A request and its answer, step by step, for programs that talk to a camera's or a recorder's web service.
#pragma once

#include <cstddef>

#include "core/text.h"

namespace usbdev {

/// Connects to the web service of a host: a name or a dotted address.
bool openHttp(const char *host, int &sock);

/// Closes a socket; ignores a negative one.
void closeHttp(int sock);

/// Reads up to a line feed, which is not stored; the line is not terminated when it fills its buffer. False when the
/// socket cannot be read.
bool readHttpLine(int sock, TextBuffer line, int &length);

enum class HttpHead : int {
  passed = 1,
  too_long = 0,
  unreadable = -1,
  wrong_status = -2,
};

/// Reads past the head of an answer; a status other than 200 OK is reported on standard error.
HttpHead skipHttpHead(int sock);

/// Sends a request with credentials; false when it is too long, with nothing sent, or when it cannot be sent.
bool sendHttpRequest(int sock, const char *host, const char *path, const char *user, const char *password);

/// Finds the length of a text's first line; false when the text has no line feed.
bool findFirstLine(const char *text, std::size_t &length);

}  // namespace usbdev
