/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/*
 * The host's command execution. Which of the host's libraries defines it differs between hosts, so a caller declares it
 * weak and runs the program itself when no loaded library defines it.
 */
#ifndef PLATFORM_ORDA_EXEC_H
#define PLATFORM_ORDA_EXEC_H

#ifdef __cplusplus
extern "C" {
#endif

/* Runs a program without a shell, waits for it and returns its exit status. Arguments: three zeros, the program's path,
 * its arguments, a null. */
int orda_exec(int reserved1, int reserved2, int reserved3, const char *program, ...);

#ifdef __cplusplus
}
#endif

#endif
