/* Devices that come and go: the hotplug handler, start-up synchronisation, node readers and setters. */
#ifndef USBDEV_HOTPLUG_H
#define USBDEV_HOTPLUG_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- hotplug --- */

int mn_set_usbdev_hotplug(_usbdev_des *device, int *profile, char *devname, int *vnode, _usbdev_conflict *conflict);

/* --- configuration synchronisation --- */

int vl_set_devpf_list(void);
int check_halvane(void);
int mn_sync_usbdev_conf(void);
int get_conf_chinfo(_usbdev_update *channels, int *conflict_map, int *new_camera_count, _usbdev_update *new_cameras);
int get_conf_audioinfo(_usbdev_update *channels, int *conflict_map, int *new_card_count, _usbdev_update *new_cards,
                       int new_camera_count, const _usbdev_update *new_cameras);
int update_usbinfo(_usbdev_update *channels);
int sync_usbdev(int new_camera_count, _usbdev_update *new_cameras, int new_card_count, _usbdev_update *new_cards);
int rmNone1stProfile(_usbdev_update *channels);

/* --- device node and media info readers --- */

int get_video_info(const char *interface_name, int *vnode, char *name);
int get_audio_info(const char *interface_name, int *card, char *name);
int get_usb_vnode(_usbdev_update *record);
int get_usb_anode(_usbdev_update *record);

/* --- audio and sps setters --- */

int mn_set_usbchn_sps(int profile, int value);
int mn_set_usbdev_volume(int profile);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
