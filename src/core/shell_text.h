// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Text from outside that is put into a shell command line: does the shell read it as plain text?
#pragma once

namespace usbdev {

bool isSafeInDoubleQuotes(const char *text);
bool isSafeInSingleQuotes(const char *text);
/// As one bare word.
bool isSafeWord(const char *text);
/// As bare words, with blanks between them.
bool areSafeWords(const char *text);

}  // namespace usbdev
