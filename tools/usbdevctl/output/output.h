// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Standard output and standard error of the program, and whether the former takes colour.
#pragma once

#include <cstddef>
#include <limits>
#include <string>

namespace usbdevctl {

/// Writes text to standard output.
void print(const std::string &text);

/// Writes what has been printed so far; false when it could not be written.
bool flushOutput();

/// Writes one line "usbdevctl: message" to standard error; nothing in it reaches the terminal as a control character.
void complain(const std::string &message);

enum class Style { plain, heading, good, notice, bad };

/// The text in the colour of its style, or as it is where colour is off.
std::string styled(const std::string &text, Style style, bool colour);

/// The columns of the terminal that standard output is, or of COLUMNS there; without an end elsewhere.
std::size_t outputWidth();
constexpr std::size_t kEndless = std::numeric_limits<std::size_t>::max();

/// Colour is used on terminals only, and not if NO_COLOR is set.
bool outputTakesColour();

}  // namespace usbdevctl
