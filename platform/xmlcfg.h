/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* libvlxmlcfg.so: the host's XML configuration files, addressed by root element, section, key and sub-key. */
#ifndef PLATFORM_XMLCFG_H
#define PLATFORM_XMLCFG_H

#ifdef __cplusplus
extern "C" {
#endif

/* Opens a file for reading (mode 0) or for reading and writing (mode 1). Returns 1 on success, another value on
 * failure. */
int xmlcfg_open(int mode, const char *path, void **handle);

/* Returns the integer, or the default where the path is missing. The sub-key is null for a key right below a section.
 */
int xmlcfg_get_int(void *handle, int default_value, const char *root, const char *section, const char *key,
                   const char *sub_key);

/* Copies at most size bytes of the text, or of the default where the path is missing; the copy may be unterminated. */
int xmlcfg_get_str(void *handle, const char *default_value, char *buffer, int size, const char *root,
                   const char *section, const char *key, const char *sub_key);

/* Create or replace a value. The handle has to be opened for writing. */
int xmlcfg_set_int(void *handle, int value, const char *root, const char *section, const char *key,
                   const char *sub_key);
int xmlcfg_set_str(void *handle, const char *value, const char *root, const char *section, const char *key,
                   const char *sub_key);

/* Closes the handle. If it was opened for writing, this stores the changes: a negative result means that nothing was
 * stored, any other result that everything was. The flag is 0. */
int xmlcfg_close(void *handle, int flag);

#ifdef __cplusplus
}
#endif

#endif
