// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The C library's own definition of a function that the test program defines itself.
#pragma once

#include <dlfcn.h>

namespace contract {

template <typename Function>
Function *realFunction(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace contract
