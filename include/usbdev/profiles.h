/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * Stream profiles: assignment, settings, port switch, listings, capabilities and information.
 *
 * <usbdev/usbdev.h> explains the terms of the comments.
 */
#ifndef USBDEV_PROFILES_H
#define USBDEV_PROFILES_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** @name Profile assignment: take the lock
 * @{ */

/**
 * Checks whether the device in a port can get a profile. Fails when the device has another profile. An unknown port is
 * a success.
 *
 * @param[in] usbslot
 * @param[in] profile 0 to 3
 * @param[out] unassigned 1 when the device's channel has no profile, else untouched
 */
int vl_chk_usbdev_profile(const char *usbslot, int profile, int *unassigned);

/**
 * Assigns a profile to the channel of the device in a port, creates its live link, and makes the channels that conflict
 * with it wait for it. Runs commands: those of chkconflict(), and "/bin/ln" while it holds the lock. Logs an event.
 *
 * @param[in] usbslot
 * @param[in] profile 0 to 3
 * @return 0 also when the device has this profile already; fails when the profile belongs to another device, the device
 *   has another profile, or the port is unknown
 */
int vl_set_usbchn_profile(char *usbslot, int profile);

/**
 * Takes a profile from its channel: removes its links, clears its sharing settings, and hands over to a channel that
 * waits for this one. Runs commands. Notifies. Fails when no channel serves the profile. When the change cannot be
 * stored, the links have been removed nevertheless.
 *
 * @param[in] profile 0 to 3
 * @param[in] client_ip dotted address of the client, may be null
 * @param[in] event_code is sent in the notification, and is the mode of updateConflict()
 */
int vl_clear_usbchn_profile(int profile, const char *client_ip, int event_code);

/**
 * Renames a profile, and logs an event if the name changed. Runs nothing.
 *
 * @param[in] profile 0 to 3
 * @param[in] name cut to 255 bytes
 * @param[in] event_code with 5 the event is always logged
 */
int vl_set_profile_channelname(int profile, const char *name, int event_code);

/** @} */

/** @name Stream settings: take the lock
 * @{ */

/**
 * Stores the stream settings of a profile: writes and logs the settings that differ from the old ones. Runs commands:
 * those of mn_get_usbchn_fmts(). Notifies when a setting changed or the event code is 5. Fails, and writes nothing,
 * when the camera does not offer codec and size. The events are logged before the settings are stored, so they remain
 * when the settings cannot be stored.
 *
 * @param[in] profile 0 to 3
 * @param[in,out] new_info the settings; its stream type is set
 * @param[in] old_info the settings as vl_get_stream_info() returns them
 * @param[in] event_code with 5 every setting is logged
 * @return 0, or the result of the notification; -1 when it fails
 */
int vl_set_usbchn_stream(int profile, _streaminfo *new_info, const _streaminfo *old_info, int event_code);

/**
 * Chooses a frame rate of the camera: the first one in its list that is not above the requested rate, or else the last
 * one in the list. Runs commands: those of mn_get_usbchn_fmts(). Fails when the camera does not offer codec and size.
 *
 * @param[in] profile 0 to 3
 * @param[in] request vcodec, width, height and framerate are read
 * @param[out] chosen_fps untouched when the requested rate is not above 0
 */
int findclosedFPS(int profile, const _streaminfo *request, float *chosen_fps);

/**
 * Logs an event for each stream setting that changed. Takes no lock, runs nothing. Logs nothing for a profile out of
 * range.
 *
 * @param[in] profile 0 to 3
 * @param[in] new_info,old_info
 * @param[in] chosen_fps the rate that is set
 * @param[in] event_code with 5 every setting is logged
 */
void Add_setStream_log(int profile, const _streaminfo *new_info, const _streaminfo *old_info, float chosen_fps,
                       int event_code);

/** @} */

/** @name USB port switch: takes the lock
 * @{ */

/**
 * Switches a port on or off, and updates the conflict marks: a port that is switched on may have to wait, one that is
 * switched off hands over. Runs commands. Notifies when a camera with a profile is switched off, and when a camera that
 * need not wait is switched on and the last other channel has codec MJPEG. Logs an event. Fails when the port is
 * unknown. Prints "open read [PATH] failed, ret: N", or "open write ...", on standard error when the file cannot be
 * opened.
 *
 * @param[in] usbslot
 * @param[in] state "enable" is on, any other text is off
 * @param[in] client_ip not used, may be null
 */
int vl_set_usbslot_switch(const char *usbslot, const char *state, const char *client_ip);

/** @} */

/** @name Listings: take the lock
 * @{ */

/**
 * Lists the profiles that no channel has, such as "0,2". Runs nothing.
 *
 * @param[out] out 16 bytes, which the caller has to set to zero before: the text is written without a terminating zero,
 *   and for an empty list nothing is written
 */
int vl_get_available_profile(char *out);

/**
 * Lists the profiles that can stream now, in the order of their channels. Runs commands, those of mn_get_usbchn_fmts(),
 * while it holds the lock: other threads wait for the lock until the cameras have answered.
 *
 * @param[out] out as for vl_get_available_profile()
 */
int vl_get_usbdev_list(char *out);

/**
 * Describes the channels. Runs nothing.
 *
 * @param[out] rows 10 records, one per channel; for a channel without a device the whole record is zero, the profile
 *   too
 */
int vl_get_devpf_list(_usbdev_entry *rows);

/**
 * Describes the profiles. Runs nothing.
 *
 * @param[out] rows 4 records, one per profile; for a profile that no channel has, profile is -1 and the rest is zero
 */
int vl_get_profile_list(_usbdev_entry *rows);

/** @} */

/** @name Capability queries: take the lock
 * @{ */

/**
 * Asks the camera of a profile for its formats. Runs commands: those of mn_get_usbchn_fmts().
 *
 * @param[in] profile 0 to 3
 * @param[out] table USBDEV_FORMATS records, untouched when no format is kept
 * @return the number of formats; -1 when no channel serves the profile, its device is not attached, has no video node
 *   or its port is switched off, or when the query cannot be started
 */
int vl_get_usbchn_cap(int profile, _usbfmt_des *table);

/**
 * Reads the stored codecs of a profile's camera, such as "0 1". Runs nothing. Fails as vl_get_usbchn_cap() does.
 *
 * @param[in] profile 0 to 3
 * @param[out] cap 16 bytes
 */
int vl_get_profile_video_cap(int profile, char *cap);

/**
 * Reads the stored audio capability of a profile's sound card. Runs nothing. Fails as vl_get_usbchn_cap() does, with
 * the sound card in place of the video node.
 *
 * @param[in] profile 0 to 3
 * @param[out] cap 16 bytes
 */
int vl_get_usbchn_audio_cap(int profile, char *cap);

/** @} */

/** @name Profile and stream information: take the lock, run nothing
 * @{ */

/**
 * Reads all settings of a profile. Runs nothing.
 *
 * @param[in] profile 0 to 3
 * @param[out] info always cleared and preset, also on failure
 */
int vl_get_profile_info(int profile, _profile_info *info);

/**
 * Reads the profile of a channel. Runs nothing.
 *
 * @param[in] channel 0 to 9
 * @return the profile, or -1 when the channel has none or the file cannot be opened
 */
int vl_get_profileID(int channel);

/**
 * Reads the stream settings of a profile. Runs nothing.
 *
 * @param[in] profile 0 to 3
 * @param[out] info always preset; header, channel and reserved fields are not changed
 * @return 0; -1 when no channel serves the profile or the file cannot be opened; -2 when its device is not attached, -3
 *   when it waits for another channel or is unsupported, -4 when its port is switched off
 */
int vl_get_stream_info(int profile, _streaminfo *info);

/** @} */

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
