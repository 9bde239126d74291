// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// On a host without orda_exec the calls fail by which the library runs programs itself.
#include <gtest/gtest.h>

#include "every_call.h"

namespace calls {
namespace {

TEST(EveryOutsideCallOfOwnExecution, MayFailOnceAndForEver) { failEvery(kOwnExecution, "own execution"); }

}  // namespace
}  // namespace calls
