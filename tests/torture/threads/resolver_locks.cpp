// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// For the thread sanitizer, which does not see the locks that the C library's resolver takes: not a race, whatever they
// protect.
// NOLINTNEXTLINE(readability-identifier-naming): the sanitizer's own name
extern "C" const char *__tsan_default_suppressions() { return "race:gethostbyname_r\nrace:__libc_dynarray\n"; }
