/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * What the settings pages show of the host, and the time-out counters.
 *
 * <usbdev/usbdev.h> explains the terms of the comments.
 */
#ifndef USBDEV_HOSTINFO_H
#define USBDEV_HOSTINFO_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** @name Host information: takes no lock
 * @{ */

/**
 * Reads the TCP port of the host's web pages. Fails when the system configuration cannot be opened, and when the search
 * reaches the section "[NTP]" or a line that is not a setting; in these two cases its file stays open.
 *
 * @param[out] port untouched when it is not set, which is a success
 */
int vl_get_nas_HTTPport(int *port);

/**
 * Reads the version of the host's system, with the results of vl_get_nas_HTTPport().
 *
 * @param[out] version 256 bytes
 */
int vl_get_nas_version(char *version);

/**
 * Reads what the host's package registry stores about an application package. Runs commands: "/sbin/readcfg".
 *
 * @param[in] package its name
 * @param[out] info enabled is always set, a text only when the registry has it
 * @return 0
 */
int vl_get_bndl_info(const char *package, BndlInfo *info);

/** @} */

/** @name Time-out counters in shared memory: take no lock, run nothing
 * @{ */

/**
 * Finds or creates the shared-memory segment of the time-out counters: four 32-bit counters, key 1519.
 *
 * @return its id, or -1
 */
int vl_create_log_shm(void);

/**
 * Attaches the segment; the caller detaches it.
 *
 * @param[in] id
 * @return its address, or null
 */
void *vl_attach_log_shm(int id);

/**
 * Sets the counters to zero.
 *
 * @param[in,out] address 16 bytes; the address that vl_attach_log_shm() returned
 */
void vl_log_shm_init(void *address);

/**
 * Adds one to a counter. If two processes add at the same time, one count may be lost.
 *
 * @param[in] index 0 to 3
 */
int vl_add_shm_timeout_log(int index);

/** @} */

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
