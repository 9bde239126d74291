/*
 * Stream profiles: assignment, settings, slot switch, listings, capabilities and information.
 *
 * The words of the comments are defined in <usbdev/usbdev.h>.
 */
#ifndef USBDEV_PROFILES_H
#define USBDEV_PROFILES_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- profile assignment: take the lock --- */

/*
 * Tells whether the device in a slot may take a profile.
 * usbslot (in). profile (in): 0 to 3. unassigned (out): 1 when the device's channel has no profile, else untouched.
 * Fails when the device has another profile. An unknown slot is a success.
 */
int vl_chk_usbdev_profile(const char *usbslot, int profile, int *unassigned);

/*
 * Binds a profile to the channel of the device in a slot, makes its live-view link and marks the channels that it
 * collides with. Runs commands: those of chkconflict, and "/bin/ln" with the lock held. Logs an event.
 * usbslot (in). profile (in): 0 to 3. Returns 0 also when just this binding exists; fails when the profile or the
 * device is bound otherwise, or the slot is unknown.
 */
int vl_set_usbchn_profile(char *usbslot, int profile);

/*
 * Unbinds a profile: removes its links, wipes its sharing settings and hands its port over. Runs commands; notifies.
 * profile (in): 0 to 3. client_ip (in): dotted address of who asks, may be null. event_code (in): goes into the
 * notification, and is the mode of updateConflict. Fails when no channel serves the profile. When the profile cannot be
 * unbound, its links are gone all the same.
 */
int vl_clear_usbchn_profile(int profile, const char *client_ip, int event_code);

/*
 * Renames a profile, and logs an event if the name changed. Runs nothing.
 * profile (in): 0 to 3. name (in): kept to 255 bytes. event_code (in): 5 logs in any case.
 */
int vl_set_profile_channelname(int profile, const char *name, int event_code);

/* --- stream settings: take the lock --- */

/*
 * Stores the stream settings of a profile: what differs from the old ones is written and logged. Runs commands, those
 * of mn_get_usbchn_fmts; notifies when a setting changed or the event code is 5.
 * profile (in): 0 to 3. new_info (in/out): the settings; its stream type is computed anew. old_info (in): the settings
 * as vl_get_stream_info gives them. event_code (in): 5 logs everything. Fails when the camera does not offer codec and
 * size, with nothing written; otherwise returns 0, or the result of the notification. The events come before the
 * settings, and stand also when these cannot be stored.
 */
int vl_set_usbchn_stream(int profile, _streaminfo *new_info, const _streaminfo *old_info, int event_code);

/*
 * Chooses the camera's frame rate for a request: the first listed one not above it, or else the last. Runs commands.
 * profile (in): 0 to 3. request (in): vcodec, width, height and framerate are read. chosen_fps (out): untouched when
 * the requested rate is not above 0. Fails when the camera does not offer codec and size.
 */
int findclosedFPS(int profile, const _streaminfo *request, float *chosen_fps);

/*
 * Logs an event per stream setting that changed. Takes no lock, runs nothing; writes nothing for a profile out of
 * range.
 * profile (in): 0 to 3. new_info, old_info (in). chosen_fps (in): the rate that is set. event_code (in): 5 logs all.
 */
void Add_setStream_log(int profile, const _streaminfo *new_info, const _streaminfo *old_info, float chosen_fps,
                       int event_code);

/* --- USB slot switch: takes the lock --- */

/*
 * Switches a slot on or off and hands its port over. Runs commands; notifies of the channel that has a profile. Logs an
 * event.
 * usbslot (in). state (in): "enable", anything else is off. client_ip (in): dotted address of who asks, may be null.
 * Fails when the slot is unknown. Says "open read [PATH] failed, ret: N", or write, when the file cannot be opened.
 */
int vl_set_usbslot_switch(const char *usbslot, const char *state, const char *client_ip);

/* --- listings: take the lock --- */

/*
 * Lists the profiles that no channel has, such as "0,2". Runs nothing.
 * out (out): 16 bytes, zeroed by the caller: no terminating zero is written, and nothing at all for an empty list.
 */
int vl_get_available_profile(char *out);

/*
 * Lists the profiles that can stream now, in the order of their channels. Runs commands, those of mn_get_usbchn_fmts,
 * with the lock held: others wait for the file as long as the cameras take.
 * out (out): as for vl_get_available_profile.
 */
int vl_get_usbdev_list(char *out);

/*
 * Describes the channels. Runs nothing.
 * rows (out): 10 records, one per channel; those of channels without a device are all zero, the profile included.
 */
int vl_get_devpf_list(_usbdev_entry *rows);

/*
 * Describes the profiles. Runs nothing.
 * rows (out): 4 records, one per profile; in those of profiles that no channel has, profile is -1 and the rest zero.
 */
int vl_get_profile_list(_usbdev_entry *rows);

/* --- capability queries: take the lock --- */

/*
 * Asks the camera of a profile for its formats. Runs commands, those of mn_get_usbchn_fmts.
 * profile (in): 0 to 3. table (out): USBDEV_FORMATS records, untouched when no format is kept. Returns the number of
 * formats, or -1.
 */
int vl_get_usbchn_cap(int profile, _usbfmt_des *table);

/*
 * Reads the stored codecs of a profile's camera, such as "0 1". Runs nothing.
 * profile (in): 0 to 3. cap (out): 16 bytes.
 */
int vl_get_profile_video_cap(int profile, char *cap);

/*
 * Reads the stored audio capability of a profile's sound card. Runs nothing.
 * profile (in): 0 to 3. cap (out): 16 bytes.
 */
int vl_get_usbchn_audio_cap(int profile, char *cap);

/* --- profile and stream information: take the lock, run nothing --- */

/*
 * Reads all settings of a profile. Runs nothing.
 * profile (in): 0 to 3. info (out): cleared and preset in every case, also on failure.
 */
int vl_get_profile_info(int profile, _profile_info *info);

/*
 * Returns the profile of a channel, -1 when it has none or the file cannot be opened. channel (in): 0 to 9. Runs
 * nothing.
 */
int vl_get_profileID(int channel);

/*
 * Reads the stream settings of a profile. Runs nothing.
 * profile (in): 0 to 3. info (out): preset in every case; header, channel and reserved words are left as they are.
 * Returns 0; -1 when no channel serves the profile; -2 when its device is gone, -3 when it is parked or unsupported, -4
 * when its slot is switched off.
 */
int vl_get_stream_info(int profile, _streaminfo *info);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
