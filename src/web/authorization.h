// User and password as a request carries them.
#pragma once

#include <cstddef>

namespace usbdev {

constexpr std::size_t kCredentialLength = 64;

/// "Basic " and the encoding of the longest user, a colon and the longest password.
using Authorization = char[192];

/// False, the text untouched, when the user or the password is too long.
bool formatAuthorization(Authorization &text, const char *user, const char *password);

}  // namespace usbdev
