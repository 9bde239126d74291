/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* libvllog.so: the event log, which shows the users of the host what happened. */
#ifndef PLATFORM_VLLOG_H
#define PLATFORM_VLLOG_H

#ifdef __cplusplus
extern "C" {
#endif

/* Adds a line at level 0 (information) or 1 (warning). The last argument is 0. */
int vq_sql_set_log(int level, const char *text, int reserved);

#ifdef __cplusplus
}
#endif

#endif
