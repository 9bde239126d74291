// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The program's exit status; docs/usbdevctl.md has the same table.
#pragma once

namespace usbdevctl {

enum class ExitStatus : int {
  ok = 0,
  failure = 1,  // the library or the system refused
  usage = 2,    // the command line is wrong
  nothing = 3,  // it worked, but nothing applies
};

}  // namespace usbdevctl
