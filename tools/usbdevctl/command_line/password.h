// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Secrets come from the terminal or from standard input: a command line is seen by everybody on the host.
#pragma once

#include <optional>
#include <string>

namespace usbdevctl {

/// Asks at the terminal, without showing what is typed, or reads the first line of a standard input that is not a
/// terminal. Complains and gives nothing when there is no line, or one that the library could not take whole.
std::optional<std::string> readPassword(std::size_t longest);

/// Returns the argument, or for "-" what is read as a password is. `what` names it.
std::optional<std::string> secretArgument(const std::string &argument, const char *what);

}  // namespace usbdevctl
