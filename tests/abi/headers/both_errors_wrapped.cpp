// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Programs in C++ often include the headers of a C library in an extern "C" of their own, also after <error.h>.
#include <error.h>
extern "C" {
#include <usbdev/usbdev.h>
}

void useBoth();

void useBoth() {
  error(1, 0, "%s", "the C library's");
  error("the library's");
}
