/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * Identification of USB devices, format enumeration, conflicts between devices, USB ports and questions to the host.
 *
 * <usbdev/usbdev.h> explains the terms of the comments. N is the number of the video device file /dev/videoN.
 */
#ifndef USBDEV_DEVICES_H
#define USBDEV_DEVICES_H

#include <stdbool.h>
#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** @name USB device identification: takes no lock
 * @{ */

/**
 * Finds the vendor and product ids of a camera. Runs commands: "/sbin/udevadm".
 *
 * @param[in] device node and usbslot are read
 * @param[out] pidvid 16 bytes, such as "046d:0825"; an id that was not found is empty
 * @return 1, or 0 when neither id was found
 */
int find_pidvid(const _usbdev_des *device, char *pidvid);

/**
 * Looks up a camera's front-end type in "/etc/config/.usbFECam.dat". Runs commands: "/sbin/udevadm".
 *
 * @param[in] device node and usbslot are read
 * @param[out] fetype 16 bytes
 * @return 1, or -1 when the camera has neither vendor nor product id, is not listed, or is listed without a type
 */
int get_fetypeid(const _usbdev_des *device, char *fetype);

/**
 * Checks whether a camera is connected through a PCI bridge. Runs commands: "/sbin/udevadm".
 *
 * @param[in] vnode N
 * @return 1 if so; 0 if not, or if it cannot find out
 */
int isPCIbridge(int vnode);

/**
 * Finds the sysfs path of a camera's USB controller. Runs commands: "/sbin/udevadm".
 *
 * @param[in] vnode N
 * @param[out] path 256 bytes, such as "/devices/pci0000:00/0000:00:1c.0/0000:03:00.0"
 * @return 1, or 0 when the node is not on a USB controller
 */
int get_pcibridgePath(int vnode, char *path);

/**
 * Reads whether a port was last switched on. Runs nothing.
 *
 * @param[in] config a configuration handle that the caller has opened for reading
 * @param[in] usbslot
 * @return the stored state, 1 = on, of the first channel that has one for the port, else 1
 */
int get_switch_state(void *config, const char *usbslot);

/**
 * Checks whether a list file contains a device. Runs nothing.
 *
 * @param[in] devname product name
 * @param[in] listfile path; in "/etc/config/.usbnosupportlist.dat" a line matches when it is equal to the name, in any
 *   other file when the name contains it
 * @return 1 when a line matches, else 0
 */
int devlistcmp(const char *devname, const char *listfile);

/** @} */

/** @name Format enumeration: takes no lock
 * @{ */

/**
 * Asks a camera for its formats, frame sizes and frame rates, and keeps the formats that this host can use: MJPEG, and
 * raw YUYV if the host may encode. Runs commands: "/usr/bin/v4l2-ctl", those of validate_hwenc(), and one that looks
 * for a query that hangs, which it then kills.
 *
 * @param[in] vnode N
 * @param[out] table USBDEV_FORMATS records, all of them written if a format was kept, otherwise none
 * @param[out] over60 1 when the camera lists a rate above 60 frames per second, else 0; always set
 * @return the number of formats kept, 0 to 8, or -1 when the query cannot be started
 */
int mn_get_usbchn_fmts(int vnode, _usbfmt_des *table, int *over60);

/**
 * Checks whether this host may encode H.264 in hardware. Runs commands: "/sbin/readcfg" and those of
 * check_gpu_status().
 *
 * @param[out] result 1 if so; 0 if not, or if anything that encoding needs is missing
 * @return 0
 */
int validate_hwenc(int *result);

/**
 * Checks whether the driver of the host's GPU is installed. Runs commands: "gpuinfo_app".
 *
 * @param[out] result 1 if so; 0 if not, or if it cannot find out
 * @return 0
 */
int check_gpu_status(int *result);

/**
 * Checks whether a format query of a camera that hangs needs signal 9 to end. Runs commands: "/sbin/udevadm".
 *
 * @param[in] vnode N
 * @return 1 for the models that need it, else 0
 */
int vl_force_kill_v4l2_ctl(int vnode);

/** @} */

/** @name Conflicts between devices
 * @{ */

/**
 * Checks whether two devices conflict, which means that they cannot stream at the same time: on a host limited to one
 * channel always, on other hosts when they share a root port or a controller behind a PCI bridge. Takes no lock. Runs
 * commands.
 *
 * @param[in,out] other_slot the port of the other device; ends at its first "." afterwards
 * @param[in] slot the port of this device
 * @param[in] on_bridge whether this device is behind a PCI bridge whose path is known
 * @param[in] other_vnode N of the other device
 * @param[in] bridge_path the bridge path of this device, 256 bytes
 * @return 1 when they conflict, else 0
 */
int chkconflict(char *other_slot, const char *slot, bool on_bridge, int other_vnode, const char *bridge_path);

/**
 * Compares two creation times, "2024-03-05 08:15:00". Takes no lock, runs nothing.
 *
 * @param[in] a,b
 * @return 1 when b is earlier, 0 when a is earlier or a text is not a time, 2 when they are equal
 */
int isElderPf(const char *a, const char *b);

/**
 * Hands over from a channel whose device was removed, or which changes: of the channels that wait for it, the one with
 * the earliest creation time becomes the successor, and the others then wait for the successor. Takes the lock. Runs
 * commands.
 *
 * @param[in] channel 0 to 9
 * @param[in] value the conflict mark that the waiting channels get first, usually -1
 * @param[in] mode with 0, 1 and 4 a successor is chosen; on a host limited to one channel all others then wait for the
 *   successor with 0 and 4, and with 4 the channel itself too; any other mode only writes the marks
 * @param[out] profile the successor's profile, 99 without a successor
 */
int updateConflict(int channel, int value, int mode, int *profile);

/**
 * Finds the first channel that conflicts with a channel and may stream. Takes the lock. Runs commands.
 *
 * @param[in] channel 0 to 9
 * @param[in,out] answers 10 ints; entry [channel] is set to the channel found, and not changed when there is none
 */
int getConflictCH(int channel, int *answers);

/**
 * Computes conflict marks again. Takes the lock. Runs commands.
 *
 * @param[in,out] states 10 ints, one per channel: -1 skips the channel, 0 clears its mark and computes it again, 1
 *   computes it again, any other value is written as its mark. Afterwards: 1 for a channel whose mark was computed,
 *   else -1.
 */
int syncConflict(int *states);

/** @} */

/** @name Available devices and USB ports: take the lock, run nothing
 * @{ */

/**
 * Describes the channels that can get a profile: those with neither profile nor conflict mark.
 *
 * @param[out] rows 10 records, one per channel; all zero for the other channels. A channel with sound only has frame
 *   rate 0, a channel with video only has audio disabled.
 */
int vl_get_available_dev(_availinfo *rows);

/**
 * Describes the channels that serve a profile.
 *
 * @param[out] rows 10 records, one per channel; for a channel that does not serve it, or has a conflict mark, stream
 *   type is -1 and the rest is zero
 * @param[in] profile 0 to 3, or -1 for the channels without a profile
 */
int vl_get_available_dev_N_channel(_availinfo *rows, int profile);

/**
 * Reads the codecs of the device in a port. Fails when the device has no video node or its port is switched off.
 *
 * @param[in] usbslot
 * @param[out] cap 16 bytes, such as "0 1"; untouched when no attached device is in the port, which is a success
 */
int vl_get_usbslot_video_cap(const char *usbslot, char *cap);

/**
 * Reads the stream settings of the device in a port. If two channels have the port, the last one counts. The header and
 * the reserved fields are not changed.
 *
 * @param[in] usbslot
 * @param[out] info always preset; channel stays -1 when no attached device is in the port
 */
int vl_get_usbslot_info(const char *usbslot, _streaminfo *info);

/** @} */

/** @name Host model and codec support: take no lock
 * @{ */

/**
 * Finds the number of a port on the host's panel. Runs commands: "hwinfo_app".
 *
 * @param[in] usbslot without a single quote
 * @return the number, or -1 when the host does not report one
 */
int vl_HOS_CLI_usbid(const char *usbslot);

/**
 * Checks whether the host has a picture of its own model. Runs nothing.
 *
 * @return 0 if so, else -1
 */
int vl_find_HOS_model_pic(void);

/**
 * Reads whether the host's GPU supports the encoding add-on. Runs nothing. Fails when the state file is missing or its
 * first line has no "support=".
 *
 * @param[out] supported 1 or 0; 0 also on failure
 */
int vl_check_HOS_halvane_support(int *supported);

/** @} */

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
