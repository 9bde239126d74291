// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The programs that the library runs itself on a host without orda_exec, made up: posix_spawn and waitpid.
#pragma once

namespace calls {

bool hasChildren();
void forgetChildren();

}  // namespace calls
