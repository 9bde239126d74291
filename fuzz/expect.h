// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The rules that a fuzzer holds what it calls against.
#pragma once

namespace fuzz {

/// Prints the rule and ends the program if it does not hold; the fuzzer then keeps the input.
void expect(bool holds, const char *rule);

/// Standard error; a fuzzer closes it while the code under test runs, which prints much.
int reportDescriptor();

}  // namespace fuzz
