/* Text utilities, queries of the host, the mapping from profile to channel and the change notification. */
#ifndef USBDEV_CORE_H
#define USBDEV_CORE_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- text utilities --- */

char *trim(char *text);
char *trimdatetime(char *text, const char *remove);
int get_two_params(char *line, const char *separator, char *left, char *right);
int process_json_string(char *text, int capacity);

/* --- host platform queries --- */

int get_bndl_install_path(const char *package, char *path);
int get_bndl_info(const char *package, const char *field, char *value);
int get_nas_info(const char *key, char *value);
int AMDmodel_oneChannelLimited(void);

/* --- profile mapping and change notification --- */

int trsProfiletoPlugCh(int profile, int *channel);
int vl_getDevName(int profile, char *name);
int vl_settingNotify(const void *datagram);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
