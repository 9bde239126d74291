/*
 * What the pages tell about the host, and the time-out counters.
 *
 * The words of the comments are defined in <usbdev/usbdev.h>.
 */
#ifndef USBDEV_HOSTINFO_H
#define USBDEV_HOSTINFO_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- host information: takes no lock --- */

/*
 * Reads the port of the host's web pages. port (out): untouched when it is not set, which is a success. Fails when the
 * system configuration cannot be read up to that setting; its file then stays open.
 */
int vl_get_nas_HTTPport(int *port);

/* Reads the version of the host's system, in the way of vl_get_nas_HTTPport. version (out): 256 bytes. */
int vl_get_nas_version(char *version);

/*
 * Reads the registration of an application package. Runs commands: "/sbin/readcfg".
 * package (in): its name. info (out): enabled is set in every case, a text only when the host knows it. Returns 0.
 */
int vl_get_bndl_info(const char *package, BndlInfo *info);

/* --- shared-memory time-out log: takes no lock, runs nothing --- */

/*
 * Finds or makes the shared-memory segment of the time-out counters: four 32-bit counters, key 1519. Returns its id, or
 * -1.
 */
int vl_create_log_shm(void);

/* Attaches the segment; the caller detaches it. id (in). Returns its address, or null. */
void *vl_attach_log_shm(int id);

/* Sets the counters to zero. address (in/out): 16 bytes, as vl_attach_log_shm returned it. */
void vl_log_shm_init(void *address);

/* Adds one to a counter. index (in): 0 to 3. Two processes that add at once may lose a count. */
int vl_add_shm_timeout_log(int index);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
