/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * Text utilities, queries of the host, the mapping from profile to channel and the change notification.
 *
 * <usbdev/usbdev.h> explains the terms of the comments.
 */
#ifndef USBDEV_CORE_H
#define USBDEV_CORE_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** @name Text utilities: take no lock, run nothing
 * @{ */

/**
 * Trims a text in place: skips leading blanks, tabs and double quotes, and overwrites trailing blanks, line ends and
 * double quotes with zeros. Trailing tabs stay.
 *
 * @param[in,out] text
 * @return the start of the trimmed text, inside the same buffer; null for null
 */
char *trim(char *text);

/**
 * Removes every occurrence of one character from a short text, in place.
 *
 * @param[in,out] text below 64 bytes
 * @param[in] remove points to the character
 * @return text
 */
char *trimdatetime(char *text, const char *remove);

/**
 * Splits a line at the first occurrence of a separator and trims both parts.
 *
 * @param[in,out] line ends at the separator afterwards
 * @param[in] separator a text
 * @param[out] left,right as large as the line
 * @return 1, or -1 when the line has no separator
 */
int get_two_params(char *line, const char *separator, char *left, char *right);

/**
 * Prepares a text, in place, for use inside a JSON string: removes its trailing blanks and quotes, removes line ends
 * and escapes backslashes and double quotes.
 *
 * @param[in,out] text a buffer of `capacity` bytes
 * @param[in] capacity 1 to 1024
 * @return 1, or 0 when the capacity is out of range (the text is then unchanged) or the result does not fit (the text
 *   is then not terminated; do not use it)
 */
int process_json_string(char *text, int capacity);

/** @} */

/** @name Host platform queries: take no lock
 * @{ */

/**
 * Finds the folder in which an application package is installed. Runs commands: "/sbin/readcfg". Fails when the package
 * is unknown, or its name contains a character that is special to a shell ($, back quote, backslash, double quote, line
 * end).
 *
 * @param[in] package its name
 * @param[out] path 128 bytes
 */
int get_bndl_install_path(const char *package, char *path);

/**
 * Reads one field of an application package from the host's package registry. Runs commands: "/sbin/readcfg". Fails
 * when there is no such field.
 *
 * @param[in] package,field names, as for get_bndl_install_path()
 * @param[out] value 128 bytes
 */
int get_bndl_info(const char *package, const char *field, char *value);

/**
 * Reads a value of the host's system configuration, from the settings before its section "[NTP]".
 *
 * @param[in] key
 * @param[out] value 32 bytes
 * @return 0 also when the key does not occur (value is then untouched); -1 when the configuration cannot be opened, or
 *   when the search reaches the section "[NTP]" or a line that is not a setting
 */
int get_nas_info(const char *key, char *value);

/**
 * Checks whether this host is limited to one camera channel. Runs commands, and creates the file "/tmp/vl_cpu.info",
 * which stays.
 *
 * @return 1 if so; 0 if not, or if it cannot find out
 */
int AMDmodel_oneChannelLimited(void);

/** @} */

/** @name Profile mapping and change notification
 * @{ */

/**
 * Finds the channel that serves a profile; of several, the lowest. Takes the lock, runs nothing. Fails when no channel
 * serves it or the file cannot be opened.
 *
 * @param[in] profile 0 to 3
 * @param[out] channel
 */
int trsProfiletoPlugCh(int profile, int *channel);

/**
 * Copies the name of the device that serves a profile. Takes the lock, runs nothing. Fails when no channel serves it or
 * the file cannot be opened.
 *
 * @param[in] profile 0 to 3
 * @param[out] name 256 bytes
 */
int vl_getDevName(int profile, char *name);

/**
 * Sends a change notification to the manager and does not wait for an answer. Takes no lock. Fails, and prints a
 * message on standard error, when the datagram cannot be sent.
 *
 * @param[in] datagram 56 bytes: the text "ORDA_VLM2_CFCG_N", 16 bytes of request header, then the 32-bit integers
 *   profile, video node, audio node, flag, event and target, in host byte order
 */
int vl_settingNotify(const void *datagram);

/** @} */

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
