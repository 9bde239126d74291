/* Stream profiles: assignment, settings, slot switch, listings, capabilities and information. */
#ifndef USBDEV_PROFILES_H
#define USBDEV_PROFILES_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- profile assignment --- */

int vl_chk_usbdev_profile(const char *usbslot, int profile, int *unassigned);
int vl_set_usbchn_profile(char *usbslot, int profile);
int vl_clear_usbchn_profile(int profile, const char *client_ip, int event_code);
int vl_set_profile_channelname(int profile, const char *name, int event_code);

/* --- stream settings --- */

int vl_set_usbchn_stream(int profile, _streaminfo *new_info, const _streaminfo *old_info, int event_code);
int findclosedFPS(int profile, const _streaminfo *request, float *chosen_fps);
void Add_setStream_log(int profile, const _streaminfo *new_info, const _streaminfo *old_info, float chosen_fps,
                       int event_code);

/* --- USB slot switch --- */

int vl_set_usbslot_switch(const char *usbslot, const char *state, const char *client_ip);

/* --- listings --- */

int vl_get_available_profile(char *out);
int vl_get_usbdev_list(char *out);
int vl_get_devpf_list(_usbdev_entry *rows);
int vl_get_profile_list(_usbdev_entry *rows);

/* --- capability queries --- */

int vl_get_usbchn_cap(int profile, _usbfmt_des *table);
int vl_get_profile_video_cap(int profile, char *cap);
int vl_get_usbchn_audio_cap(int profile, char *cap);

/* --- profile and stream information --- */

int vl_get_profile_info(int profile, _profile_info *info);
int vl_get_profileID(int channel);
int vl_get_stream_info(int profile, _streaminfo *info);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
