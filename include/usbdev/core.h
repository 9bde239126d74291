/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/*
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

/* --- text utilities: take no lock, run nothing --- */

/*
 * Trims a text in place: skips leading blanks, tabs and double quotes, and overwrites trailing blanks, line ends and
 * double quotes with zeros. Trailing tabs stay.
 * text (in/out). Returns the start of the trimmed text, inside the same buffer; null for null.
 */
char *trim(char *text);

/*
 * Removes every occurrence of one character from a short text, in place.
 * text (in/out): below 64 bytes. remove (in): points to the character. Returns text.
 */
char *trimdatetime(char *text, const char *remove);

/*
 * Splits a line at the first occurrence of a separator and trims both parts.
 * line (in/out): ends at the separator afterwards. separator (in): a text. left, right (out): as large as the line.
 * Returns 1, or -1 when the line has no separator.
 */
int get_two_params(char *line, const char *separator, char *left, char *right);

/*
 * Prepares a text, in place, for use inside a JSON string: removes its trailing blanks and quotes, removes line ends
 * and escapes backslashes and double quotes.
 * text (in/out): a buffer of `capacity` bytes, 1 to 1024. Returns 1, or 0 when the capacity is out of range (the text
 * is then unchanged) or the result does not fit (the text is then not terminated; do not use it).
 */
int process_json_string(char *text, int capacity);

/* --- host platform queries: take no lock --- */

/*
 * Finds the folder in which an application package is installed. Runs commands: "/sbin/readcfg".
 * package (in): its name. path (out): 128 bytes. Fails when the package is unknown, or its name contains a character
 * that is special to a shell ($, back quote, backslash, double quote, line end).
 */
int get_bndl_install_path(const char *package, char *path);

/*
 * Reads one field of an application package from the host's package registry. Runs commands: "/sbin/readcfg".
 * package, field (in): names, as for get_bndl_install_path. value (out): 128 bytes. Fails when there is no such field.
 */
int get_bndl_info(const char *package, const char *field, char *value);

/*
 * Reads a value of the host's system configuration, from the settings before its section "[NTP]".
 * key (in). value (out): 32 bytes. Returns 0 also when the key does not occur (value is then untouched); -1 when the
 * configuration cannot be opened, or when the search reaches the section "[NTP]" or a line that is not a setting.
 */
int get_nas_info(const char *key, char *value);

/*
 * Checks whether this host is limited to one camera channel. Runs commands, and creates the file "/tmp/vl_cpu.info",
 * which stays. Returns 1 if so; 0 if not, or if it cannot find out.
 */
int AMDmodel_oneChannelLimited(void);

/* --- profile mapping and change notification --- */

/*
 * Finds the channel that serves a profile; of several, the lowest. Takes the lock, runs nothing.
 * profile (in): 0 to 3. channel (out). Fails when no channel serves it or the file cannot be opened.
 */
int trsProfiletoPlugCh(int profile, int *channel);

/*
 * Copies the name of the device that serves a profile. Takes the lock, runs nothing.
 * profile (in): 0 to 3. name (out): 256 bytes. Fails when no channel serves it or the file cannot be opened.
 */
int vl_getDevName(int profile, char *name);

/*
 * Sends a change notification to the manager and does not wait for an answer. Takes no lock.
 * datagram (in): 56 bytes: the text "ORDA_VLM2_CFCG_N", 16 bytes of request header, then the 32-bit integers profile,
 * video node, audio node, flag, event and target, in host byte order. Fails, and prints a message on standard error,
 * when the datagram cannot be sent.
 */
int vl_settingNotify(const void *datagram);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
