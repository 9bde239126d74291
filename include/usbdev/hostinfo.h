/* What the pages tell about the host, and the time-out counters. */
#ifndef USBDEV_HOSTINFO_H
#define USBDEV_HOSTINFO_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- host information --- */

int vl_get_nas_HTTPport(int *port);
int vl_get_nas_version(char *version);
int vl_get_bndl_info(const char *package, BndlInfo *info);

/* --- shared-memory time-out log --- */

int vl_create_log_shm(void);
void *vl_attach_log_shm(int id);
void vl_log_shm_init(void *address);
int vl_add_shm_timeout_log(int index);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
