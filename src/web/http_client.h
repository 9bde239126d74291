// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One HTTP/1.0 request, whose answer is read raw.
#pragma once

#include <usbdev/records.h>

#include <cstddef>

namespace usbdev {

/// The path of the next request.
using RequestPath = char[256];

enum class Credentials { left_out, sent };

/// Room for an answer. A size that is not above 0 takes no byte.
struct Reply {
  char *start;
  int size;
};

/// Sends the request of a path to a server and reads the whole answer, `chunk` bytes at a time, cut to the reply's size
/// and not terminated; `count` is what it took. False without a connection, or when a field is not terminated or too
/// long; the path is then cleared, unless the field is the host's name. A broken connection ends the process.
bool askServer(const NasServer &server, RequestPath &path, Credentials credentials, std::size_t chunk,
               const Reply &reply, int &count);

/// Prints a text and the system's error and ends the process with status 0.
[[noreturn]] void endProcess(const char *text);

}  // namespace usbdev
