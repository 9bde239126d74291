/* Identification of USB devices, format enumeration, port conflicts, slots and host probes. */
#ifndef USBDEV_DEVICES_H
#define USBDEV_DEVICES_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- USB device identification --- */

int find_pidvid(const _usbdev_des *device, char *pidvid);
int get_fetypeid(const _usbdev_des *device, char *fetype);
int isPCIbridge(int vnode);
int get_pcibridgePath(int vnode, char *path);
int get_switch_state(void *config, const char *usbslot);
int devlistcmp(const char *devname, const char *listfile);

/* --- format enumeration --- */

int mn_get_usbchn_fmts(int vnode, _usbfmt_des *table, int *over60);
int validate_hwenc(int *result);
int check_gpu_status(int *result);
int vl_force_kill_v4l2_ctl(int vnode);

/* --- bridge conflicts --- */

int chkconflict(char *other_slot, const char *slot, bool on_bridge, int other_vnode, const char *bridge_path);
int isElderPf(const char *a, const char *b);
int updateConflict(int channel, int value, int mode, int *profile);
int getConflictCH(int channel, int *answers);
int syncConflict(int *states);

/* --- available devices and USB slots --- */

int vl_get_available_dev(_availinfo *rows);
int vl_get_available_dev_N_channel(_availinfo *rows, int profile);
int vl_get_usbslot_video_cap(const char *usbslot, char *cap);
int vl_get_usbslot_info(const char *usbslot, _streaminfo *info);

/* --- host model and codec-support probes --- */

int vl_HOS_CLI_usbid(const char *usbslot);
int vl_find_HOS_model_pic(void);
int vl_check_HOS_halvane_support(int *supported);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
