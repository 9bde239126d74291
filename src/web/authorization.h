// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// User and password as a request carries them.
#pragma once

#include <usbdev/records.h>

#include <cstddef>

namespace usbdev {

constexpr std::size_t kCredentialLength = 64;  // of a user's name and of a password, for a login

/// "Basic " and the encoding of a user, a colon and a password.
using Authorization = char[192];

/// False, the text untouched, when user, colon and password have more than 129 bytes together.
bool formatAuthorization(Authorization &text, const char *user, const char *password);

/// The same for a server's record, whose user and password have to be terminated within their fields.
bool formatAuthorization(Authorization &text, const NasServer &server);

}  // namespace usbdev
