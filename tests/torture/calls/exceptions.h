// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Differences after a failed call that are none: each is described, and named here with its reason.
#pragma once

#include <string>
#include <vector>

namespace calls {

// Besides the aspects of the end state: something is left behind, or the process ends.
inline constexpr char kLeft[] = "left";
inline constexpr char kProcess[] = "process";

struct Exception {
  const char *functions;  // names with blanks between them, or "*" for all
  const char *call;       // what failed, or how that begins: "popen no process: /sbin/udevadm"; of every way to get no
                          // answer, "unanswered: /sbin/udevadm"
  const char *differs;    // aspects with blanks between them, or "*" for all of the end state
  const char *why;
};

const std::vector<Exception> &exceptions();

bool covers(const Exception &exception, const std::string &function, const std::string &call,
            const std::string &aspect);

}  // namespace calls
