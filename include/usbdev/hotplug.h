/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * Devices that are plugged in and unplugged: the hotplug handler, start-up synchronisation, node readers and setters.
 *
 * <usbdev/usbdev.h> explains the terms of the comments.
 */
#ifndef USBDEV_HOTPLUG_H
#define USBDEV_HOTPLUG_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** @name Hotplug
 * @{ */

/**
 * Handles one event, a device that was plugged in or removed: chooses its channel, stores its identity and, for a new
 * device, default settings, and updates the conflict marks. Call it once for each device and event, when the device's
 * node is ready. On one host only one event may be handled at a time, whatever the ports, and none during a
 * synchronisation: two events at once would choose the same channel, and only one of the devices would be stored. The
 * callers have to ensure this with a lock of their own. Takes the lock. Runs commands. Notifies, for cameras.
 *
 * @param[in,out] device a sound card in a port that a channel knows gets that channel's device name
 * @param[out] profile the channel's profile, -1 = none; always set
 * @param[out] devname 256 bytes, set when a camera is removed
 * @param[out] vnode N before the removal, set on removal
 * @param[out] conflict when a camera is plugged in, devname is the stored name of the last channel that was looked at;
 *   the other fields are set when the camera conflicts with another channel
 * @return the channel, or -1 when no channel fits, the application ignores the device, or the file cannot be opened or
 *   stored
 */
int mn_set_usbdev_hotplug(_usbdev_des *device, int *profile, char *devname, int *vnode, _usbdev_conflict *conflict);

/** @} */

/** @name Synchronisation: takes the lock, runs commands; one at a time, like device events
 * @{ */

/**
 * Updates the file at start-up from the attached devices: check_halvane(), then mn_sync_usbdev_conf(). Holds the lock
 * while some of the commands run.
 *
 * @return 0
 */
int vl_set_devpf_list(void);

/**
 * If the host may not encode (any more), changes channels from H.264 to MJPEG, and marks cameras without MJPEG as
 * unsupported (999). Opens the file for writing only when it has to change a channel.
 */
int check_halvane(void);

/**
 * Finds the attached devices, updates the channels that know them, handles all others as newly plugged in, and creates
 * the links of the streams again. Holds the lock while some of the commands run.
 *
 * @return 1, or -1 when the file cannot be opened
 */
int mn_sync_usbdev_conf(void);

/**
 * Finds the attached cameras. Holds the lock while the commands run.
 *
 * @param[in,out] channels 10 records; vnode, usbslot, state and devname are set for a channel whose camera is attached
 * @param[in,out] conflict_map 10 ints, as for syncConflict()
 * @param[in,out] new_camera_count number of entries in new_cameras
 * @param[in,out] new_cameras 10 records; cameras that no channel knows are added
 * @return 0 also when the cameras cannot be listed
 */
int get_conf_chinfo(_usbdev_update *channels, int *conflict_map, int *new_camera_count, _usbdev_update *new_cameras);

/**
 * Finds the attached sound cards, as get_conf_chinfo() finds cameras. A card gets the name of the camera in its port,
 * if there is one. Holds the lock while the commands run.
 *
 * @param[in,out] channels,conflict_map as for get_conf_chinfo()
 * @param[in,out] new_card_count number of entries in new_cards
 * @param[in,out] new_cards 10 records
 * @param[in] new_camera_count,new_cameras what get_conf_chinfo() found, at most 10
 */
int get_conf_audioinfo(_usbdev_update *channels, int *conflict_map, int *new_card_count, _usbdev_update *new_cards,
                       int new_camera_count, const _usbdev_update *new_cameras);

/**
 * Stores what the scans found, and creates the links of the channels that have a camera and a profile. Holds the lock
 * while the commands run.
 *
 * @param[in,out] channels 10 records; those with state -1 are skipped
 */
int update_usbinfo(_usbdev_update *channels);

/**
 * Handles new devices as newly plugged in, cameras first.
 *
 * @param[in] new_camera_count,new_card_count a count larger than 10 is taken as 10, a negative one as 0
 * @param[in] new_cameras,new_cards up to 10 records each
 * @return 0
 */
int sync_usbdev(int new_camera_count, _usbdev_update *new_cameras, int new_card_count, _usbdev_update *new_cards);

/**
 * Clears every profile but profile 0, for hosts limited to one channel.
 *
 * @param[in] channels 10 records
 * @return 0
 */
int rmNone1stProfile(_usbdev_update *channels);

/** @} */

/** @name Device node and media info readers: take no lock, run commands
 * @{ */

/**
 * Finds the video node of a USB interface, and its name.
 *
 * @param[in] interface_name such as "3-1.2:1.0"
 * @param[out] vnode the last digit of N
 * @param[out] name 256 bytes
 * @return 0 also when the interface has no node (the outputs are then untouched); -1 when the name cannot be read
 */
int get_video_info(const char *interface_name, int *vnode, char *name);

/**
 * Finds the sound card of a USB interface, and its name.
 *
 * @param[in] interface_name
 * @param[out] card the last digit of the card number
 * @param[out] name 256 bytes
 * @return 0 also when the interface has no card; -1 when the command cannot be started
 */
int get_audio_info(const char *interface_name, int *card, char *name);

/**
 * Finds the video node and the name of the camera in a port. Asks the port's interfaces 0 and 2; if both have a node,
 * that of interface 2 counts.
 *
 * @param[in,out] record usbslot is read; vnode, devname and state (1) are set when a node is found
 * @return 0
 */
int get_usb_vnode(_usbdev_update *record);

/**
 * Finds the sound card in a port, as get_usb_vnode() finds a camera.
 *
 * @param[in,out] record usbslot is read; anode, devname and state (1) are set when a card is found
 * @return 0
 */
int get_usb_anode(_usbdev_update *record);

/** @} */

/** @name Audio and sps setters: take the lock, run nothing
 * @{ */

/**
 * Stores the stream-parameter state of the channel that serves a profile.
 *
 * @param[in] profile 0 to 3
 * @param[in] value any
 */
int mn_set_usbchn_sps(int profile, int value);

/**
 * Sets the sound card of the channel that serves a profile to the stored volume; a stored 0 is passed on as -1, which
 * is silence.
 *
 * @param[in] profile 0 to 3
 * @return what the host's audio library returned, or -1 when the channel has no sound card
 */
int mn_set_usbdev_volume(int profile);

/** @} */

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
