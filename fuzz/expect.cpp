// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "expect.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace fuzz {
namespace {

const int kReport = dup(STDERR_FILENO);

}  // namespace

int reportDescriptor() { return kReport; }

void expect(bool holds, const char *rule) {
  if (holds) return;
  dprintf(kReport, "does not hold: %s\n", rule);
  std::abort();
}

}  // namespace fuzz
