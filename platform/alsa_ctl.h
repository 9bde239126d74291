/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* libalsa_ctl.so: the host's sound cards. */
#ifndef PLATFORM_ALSA_CTL_H
#define PLATFORM_ALSA_CTL_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _acard_info { /* 268 bytes */
  int entry_count;           /* number of capture entries that the card reports; 0 = none */
  int channel_mode;          /* 1 = mono, 2 = capable of stereo */
  int channel_count;         /* number of sound channels of the first capture entry */
  char name[256];            /* the card's name */
} _acard_info;

/* Describes a sound card. Returns 0 on success. */
int ac_get_Acard_info(int card, _acard_info *info);

/* Sets the capture volume of a sound card: 0 to 100, or -1 for silence. Returns 0 on success. */
int ac_set_audio_volume(int card, int volume);

#ifdef __cplusplus
}
#endif

#endif
