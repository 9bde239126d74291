/*
 * Devices that come and go: the hotplug handler, start-up synchronisation, node readers and setters.
 *
 * The words of the comments are defined in <usbdev/usbdev.h>.
 */
#ifndef USBDEV_HOTPLUG_H
#define USBDEV_HOTPLUG_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- hotplug --- */

/*
 * Takes in a device that was attached or removed: chooses its channel, stores its identity and, for a new device,
 * default settings, and keeps the conflict marks right. Call it once per device and event, when the device's node is
 * ready. Events come one at a time over the whole host, at ports of their own or not, and not beside a synchronisation:
 * two at once would choose the same channel, and all but one of their devices be lost. The callers see to it, with a
 * lock of their own. Takes the lock. Runs commands; notifies of cameras.
 * device (in/out): a sound card on a port that a channel knows gets that channel's name. profile (out): the channel's
 * profile, -1 = none; set in every case. devname (out): 256 bytes, set when a camera is removed. vnode (out): N before
 * the removal, set on removal. conflict (out): devname is overwritten by the scan of a new camera; the other fields are
 * set when it collides with another channel.
 * Returns the channel, or -1 when none fits, the device is one that the application ignores, or the file cannot be
 * opened or stored.
 */
int mn_set_usbdev_hotplug(_usbdev_des *device, int *profile, char *devname, int *vnode, _usbdev_conflict *conflict);

/* --- configuration synchronisation: takes the lock, runs commands; one at a time, like device events --- */

/* Brings the file into line with the attached devices at start-up: check_halvane, mn_sync_usbdev_conf. Returns 0. */
int vl_set_devpf_list(void);

/*
 * Where the host may not encode (any more), turns channels to MJPEG, and marks those that have no MJPEG as unsupported
 * (999). The file is opened for writing only when a channel is concerned.
 */
int check_halvane(void);

/*
 * Finds the attached devices, updates the channels that know them, passes the others through the hotplug handler and
 * makes the live-stream links anew. Returns 1, or -1 when the file cannot be opened.
 */
int mn_sync_usbdev_conf(void);

/*
 * Finds the attached cameras. The lock is held while the commands run.
 * channels (in/out): 10 records; vnode, usbslot, state and devname are set for a channel whose camera is there.
 * conflict_map (in/out): 10 ints, as for syncConflict. new_camera_count (in/out): entries of new_cameras.
 * new_cameras (in/out): 10 records; cameras that no channel knows are added. Returns 0 also when there is no list.
 */
int get_conf_chinfo(_usbdev_update *channels, int *conflict_map, int *new_camera_count, _usbdev_update *new_cameras);

/*
 * Finds the attached sound cards, in the way of get_conf_chinfo; a card without a name of its own is called like the
 * camera in its slot.
 * new_card_count, new_cards (in/out): 10 records. new_camera_count, new_cameras (in): what get_conf_chinfo found, at
 * most 10.
 */
int get_conf_audioinfo(_usbdev_update *channels, int *conflict_map, int *new_card_count, _usbdev_update *new_cards,
                       int new_camera_count, const _usbdev_update *new_cameras);

/*
 * Stores what the scans found, and makes the live-stream links of the channels with a profile. The lock is held while
 * the commands run.
 * channels (in/out): 10 records; those with state -1 are passed over.
 */
int update_usbinfo(_usbdev_update *channels);

/*
 * Passes new devices through the hotplug handler, cameras first.
 * The lists (in) hold up to 10 records each; of the counts (in) a larger one counts as 10, a negative one as 0. Returns
 * 0.
 */
int sync_usbdev(int new_camera_count, _usbdev_update *new_cameras, int new_card_count, _usbdev_update *new_cards);

/* Clears every profile but profile 0, for hosts limited to one channel. channels (in): 10 records. Returns 0. */
int rmNone1stProfile(_usbdev_update *channels);

/* --- device node and media info readers: take no lock, run commands --- */

/*
 * Finds the video node and the name behind a USB interface.
 * interface_name (in): such as "3-1.2:1.0". vnode (out): last digit of N. name (out): 256 bytes. Returns 0 also when
 * the interface has no node (the outputs are then untouched); -1 when the name cannot be read.
 */
int get_video_info(const char *interface_name, int *vnode, char *name);

/*
 * Finds the sound card and its name behind a USB interface.
 * interface_name (in). card (out): last digit of the card number. name (out): 256 bytes. Returns 0 also when the
 * interface has no card; -1 when it cannot be asked for.
 */
int get_audio_info(const char *interface_name, int *card, char *name);

/*
 * Finds the video node and the name of the camera in a slot, asking its interfaces 0 and 2; the latter wins.
 * record (in/out): usbslot is read; vnode, devname and state (1) are set when a node is found. Returns 0.
 */
int get_usb_vnode(_usbdev_update *record);

/*
 * Finds the sound card in a slot, in the way of get_usb_vnode.
 * record (in/out): usbslot is read; anode, devname and state (1) are set when a card is found. Returns 0.
 */
int get_usb_anode(_usbdev_update *record);

/* --- audio and sps setters: take the lock, run nothing --- */

/* Stores the stream-parameter state of the channel that serves a profile. profile (in): 0 to 3. value (in). */
int mn_set_usbchn_sps(int profile, int value);

/*
 * Sets the sound card of the channel that serves a profile to its stored volume; a stored 0 means silence.
 * profile (in): 0 to 3. Returns what the host's audio library returned, or -1 when the channel has no sound card.
 */
int mn_set_usbdev_volume(int profile);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
