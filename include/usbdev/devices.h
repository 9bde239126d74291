/*
 * Identification of USB devices, format enumeration, port conflicts, slots and host probes.
 *
 * The words of the comments are defined in <usbdev/usbdev.h>. A slot is the kernel's name of a USB port, such as
 * "3-1.2", of at most 127 characters; N stands for the number of the video device file /dev/videoN.
 */
#ifndef USBDEV_DEVICES_H
#define USBDEV_DEVICES_H

#include <stdbool.h>
#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- USB device identification: takes no lock --- */

/*
 * Finds a camera's vendor and product. Runs commands: "/sbin/udevadm".
 * device (in): node and usbslot are read. pidvid (out): 16 bytes, such as "046d:0825"; a part that was not found is
 * empty. Returns 1, or 0 when neither was found.
 */
int find_pidvid(const _usbdev_des *device, char *pidvid);

/*
 * Looks up a camera's front-end type in "/etc/config/.usbFECam.dat". Runs commands: "/sbin/udevadm".
 * device (in): node and usbslot are read. fetype (out): 16 bytes. Returns 1, or -1 when the camera has no vendor and
 * product, is not listed, or is listed without a type.
 */
int get_fetypeid(const _usbdev_des *device, char *fetype);

/*
 * Tells whether a video node is reached through a PCI bridge. Runs commands: "/sbin/udevadm".
 * vnode (in): N. Returns 1 if so; 0 if not, or if it cannot be found out.
 */
int isPCIbridge(int vnode);

/*
 * Finds the sysfs path of the controller that carries a video node. Runs commands: "/sbin/udevadm".
 * vnode (in): N. path (out): 256 bytes, such as "/devices/pci0000:00/0000:00:1c.0/0000:03:00.0".
 * Returns 1, or 0 when the node is not on a USB controller.
 */
int get_pcibridgePath(int vnode, char *path);

/*
 * Reads whether a slot was last switched on. Runs nothing.
 * config (in): a configuration handle that the caller has opened for reading; usbslot (in).
 * Returns the stored state of the first channel that has one for the slot, else 1.
 */
int get_switch_state(void *config, const char *usbslot);

/*
 * Tells whether a list file names a device. Runs nothing.
 * devname (in): product name. listfile (in): path; in "/etc/config/.usbnosupportlist.dat" a line has to equal the
 * name, in any other file it is enough that the name contains the line. Returns 1 if it does, else 0.
 */
int devlistcmp(const char *devname, const char *listfile);

/* --- format enumeration: takes no lock --- */

/*
 * Asks a camera for its formats, frame sizes and frame rates, and keeps those that this host can use: MJPEG, and raw
 * YUYV where the host may encode. Runs commands: "/usr/bin/v4l2-ctl", those of validate_hwenc, and a look for a query
 * that hangs, which is killed.
 * vnode (in): N. table (out): USBDEV_FORMATS records, written whole and only when a format was kept. over60 (out): 1
 * when the camera lists a rate above 60 frames per second, else 0. Returns the number of formats kept, 0 to 8, or -1
 * when the query cannot be started; over60 is set in any case.
 */
int mn_get_usbchn_fmts(int vnode, _usbfmt_des *table, int *over60);

/*
 * Tells whether this host may encode H.264 in hardware. Runs commands: "/sbin/readcfg" and those of check_gpu_status.
 * result (out): 1 or 0. Returns 0; whatever is missing means no.
 */
int validate_hwenc(int *result);

/*
 * Tells whether the driver of the host's GPU is installed. Runs commands: "gpuinfo_app".
 * result (out): 1 or 0. Returns 0; whatever is missing means no.
 */
int check_gpu_status(int *result);

/*
 * Tells whether a hanging format query of a camera has to be ended with a hard kill. Runs commands: "/sbin/udevadm".
 * vnode (in): N. Returns 1 for the models that need it, else 0.
 */
int vl_force_kill_v4l2_ctl(int vnode);

/* --- bridge conflicts --- */

/*
 * Tells whether two devices cannot stream at the same time: on a host limited to one channel always, else when they
 * share a root port or a controller behind a PCI bridge. Takes no lock. Runs commands.
 * other_slot (in/out): the other device's slot; is cut at its first ".". slot (in): this device's. on_bridge (in):
 * whether this device is behind a bridge whose path is known. other_vnode (in): the other device's N. bridge_path (in):
 * this device's, 256 bytes. Returns 1 or 0.
 */
int chkconflict(char *other_slot, const char *slot, bool on_bridge, int other_vnode, const char *bridge_path);

/*
 * Compares two creation times, "2024-03-05 08:15:00". Takes no lock, runs nothing.
 * a, b (in). Returns 1 when b is the earlier one, 0 when a is or a text is no time, 2 when they are equal.
 */
int isElderPf(const char *a, const char *b);

/*
 * Hands the port of a channel that goes away, or changes, to the channel that has waited for it longest, and parks the
 * others behind that one. Takes the lock. Runs commands.
 * channel (in): 0 to 9. value (in): conflict mark for the channels parked behind it, usually -1. mode (in): 0, 1 or 4
 * choose a successor; on a host limited to one channel 0 and 4 park everyone behind it, 4 the channel itself too; any
 * other mode only writes the marks. profile (out): the successor's profile, 99 without a successor.
 */
int updateConflict(int channel, int value, int mode, int *profile);

/*
 * Finds the first active channel that a channel collides with. Takes the lock. Runs commands.
 * channel (in): 0 to 9. answers (in/out): 10 ints; entry [channel] is set, or left as it is when there is none.
 */
int getConflictCH(int channel, int *answers);

/*
 * Recomputes conflict marks. Takes the lock. Runs commands.
 * states (in/out): 10 ints, one per channel: -1 leaves it alone, 0 clears its mark and recomputes it, 1 recomputes it,
 * any other value is written as its mark. Afterwards: 1 for a channel that was recomputed, else -1.
 */
int syncConflict(int *states);

/* --- available devices and USB slots: take the lock, run nothing --- */

/*
 * Describes the channels that a profile can still be given to: those with neither profile nor conflict mark.
 * rows (out): 10 records, one per channel; the others' are all zero. An audio-only channel has frame rate 0, a
 * video-only one audio disabled.
 */
int vl_get_available_dev(_availinfo *rows);

/*
 * Describes the channels that serve a profile.
 * rows (out): 10 records, one per channel; those that do not serve it, or are parked, have stream type -1 and are
 * otherwise zero. profile (in): 0 to 3, or -1 for the channels without one.
 */
int vl_get_available_dev_N_channel(_availinfo *rows, int profile);

/*
 * Reads the codecs of the device in a slot.
 * usbslot (in). cap (out): 16 bytes, such as "0 1"; untouched when no attached device is in the slot, which is a
 * success. Fails when the device has no video node or its slot is switched off.
 */
int vl_get_usbslot_video_cap(const char *usbslot, char *cap);

/*
 * Reads the stream settings of the device in a slot.
 * usbslot (in). info (out): preset in every case; channel stays -1 when no attached device is in the slot. Of two
 * channels with the slot the last one counts. Its header and reserved words are left as they are.
 */
int vl_get_usbslot_info(const char *usbslot, _streaminfo *info);

/* --- host model and codec-support probes: take no lock --- */

/*
 * Finds the number of a slot on the host's panel. Runs commands: "hwinfo_app".
 * usbslot (in): without a single quote. Returns the number, or -1 when the host does not tell.
 */
int vl_HOS_CLI_usbid(const char *usbslot);

/* Tells whether the host has a picture of its own model: 0 if so, else -1. Runs nothing. */
int vl_find_HOS_model_pic(void);

/*
 * Reads whether the host's GPU supports the encoding add-on. Runs nothing.
 * supported (out): 1 or 0; 0 also on failure, which is a missing or unreadable state file.
 */
int vl_check_HOS_halvane_support(int *supported);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
