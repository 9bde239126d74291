// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/shell_text.h"

#include <cstring>

namespace usbdev {
namespace {

bool holdsNoneOf(const char *text, const char *forbidden) { return std::strpbrk(text, forbidden) == nullptr; }

}  // namespace

bool isSafeInDoubleQuotes(const char *text) { return holdsNoneOf(text, "$`\\\"\n\r"); }

bool isSafeInSingleQuotes(const char *text) { return holdsNoneOf(text, "'\n\r"); }

bool areSafeWords(const char *text) { return text[0] != '-' && holdsNoneOf(text, "|&;<>()$\\\"'*?[]{}#~`\t\n\r"); }

bool isSafeWord(const char *text) { return areSafeWords(text) && holdsNoneOf(text, " "); }

}  // namespace usbdev
