/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * The records that callers and the library exchange.
 *
 * Every integer has 32 bits and every record its natural alignment, so the layouts are the same on ILP32 and LP64
 * targets; the compiler checks the sizes and offsets when it builds the library. Text fields are zero-terminated within
 * their array. Reserved fields are never read, and never written unless a function is described as clearing its record.
 */
#ifndef USBDEV_RECORDS_H
#define USBDEV_RECORDS_H

#ifdef __cplusplus
extern "C" {
#endif

#define USBDEV_CHANNELS 10 /**< channels, numbered 0 to 9 */
#define USBDEV_PROFILES 4  /**< stream profiles, numbered 0 to 3 */
#define USBDEV_FORMATS 8   /**< formats of a capability table */
#define USBDEV_SIZES 32    /**< frame sizes of a format */
#define USBDEV_RATES 30    /**< frame rates of a size */

/** One USB device as the hotplug path sees it. */
typedef struct _usbdev_des {
  int devtype;       /**< 1 = camera; any other value = sound card */
  int node;          /**< number of the video device file, or of the sound card */
  char usbslot[128]; /**< the port's kernel name, such as "3-1.2" */
  int plugged;       /**< 1 = plugged in, 0 = removed */
  char devname[256]; /**< product name */
} _usbdev_des;

/** One frame size of a format. */
typedef struct _usbres_des {
  int width;               /**< pixels */
  int height;              /**< pixels */
  int fps_count;           /**< valid entries of fps */
  float fps[USBDEV_RATES]; /**< frames per second, in the camera's order */
} _usbres_des;

/** One format of a camera; a capability table is USBDEV_FORMATS of these. */
typedef struct _usbfmt_des {
  int index;                     /**< the camera's own index of the format */
  int codec;                     /**< 1 = MJPEG; 0 = raw YUYV, encoded as H.264 by the host */
  int res_count;                 /**< valid entries of res */
  _usbres_des res[USBDEV_SIZES]; /**< in the camera's order */
} _usbfmt_des;

/** What the hotplug handler reports about the channel that a new camera conflicts with. */
typedef struct _usbdev_conflict {
  char profilename[256]; /**< display name of the profile */
  char devname[256];     /**< of the last channel that was looked at */
  int channel;           /**< the channel that the camera conflicts with */
  int profile;           /**< the profile of that channel, -1 = none */
} _usbdev_conflict;

/** One channel, or one newly found device, during synchronisation. */
typedef struct _usbdev_update {
  int vnode;         /**< video device number, -1 = none */
  int anode;         /**< sound card number, -1 = none */
  char usbslot[128]; /**< the port's kernel name */
  int state;         /**< -1 = never configured, else the channel key "exists" */
  char devname[256]; /**< product name of the device */
  int slot_switch;   /**< 1 = on, 0 = off, -1 = not stored */
  int profile;       /**< 0 to 3, -1 = none */
  char hlspath[64];  /**< name of the live link */
  char hash[64];     /**< hash of the enabled share link, else empty */
} _usbdev_update;

/** The stream settings of one profile. */
typedef struct _streaminfo {
  unsigned char header[16]; /**< for the caller's use; is sent with the change notification */
  int channel;              /**< 0 to 9, -1 = none */
  int stream_type;          /**< 0 = none, 1 = audio, 2 = video, 3 = both */
  int slot_switch;          /**< the port is switched: 1 = on, 0 = off */
  int vnode;                /**< N of /dev/videoN, -1 = none */
  int vprofile;             /**< the profile, -1 = none */
  int vcodec;               /**< 1 = MJPEG, 0 = H.264 */
  int venable;              /**< 1 = the video stream is enabled */
  int spsstate;             /**< stream-parameter state */
  int width;                /**< pixels */
  int height;               /**< pixels */
  float framerate;          /**< frames per second */
  int reserved1;            /**< reserved */
  char fetype[16];          /**< front-end type of the camera */
  int anode;                /**< number of the sound card, -1 = none */
  int aprofile;             /**< the profile, -1 = none */
  int acodec;               /**< 0 = G.711 u-law, else AAC */
  int aenable;              /**< 1 = the audio stream is enabled */
  int samplerate;           /**< Hz */
  int channelno;            /**< number of audio channels */
  int bitrate;              /**< bit/s */
  int volume;               /**< 0 to 100 */
  int osdenable;            /**< 1 = shows the time in the picture */
  int reserved2[3];         /**< reserved */
  int flip;                 /**< 1 = upside down */
  int mirror;               /**< 1 = left and right exchanged */
  int ldspoutput;           /**< 1 = local display output is on */
  char vtag[16];            /**< tag of the video stream */
} _streaminfo;

/** One channel of the availability queries; from vnode on the fields have the order of _streaminfo. */
typedef struct _availinfo {
  int reserved1;       /**< reserved */
  int stream_type;     /**< -1 = not available, 0 = none, 1 = audio, 2 = video, 3 = both */
  char reserved2[256]; /**< reserved */
  char usbslot[128];   /**< the port's kernel name, such as "3-1.2" */
  char devname[256];   /**< product name of the device */
  int vnode;           /**< N of /dev/videoN, -1 = none */
  int reserved3;       /**< reserved */
  int vcodec;          /**< 1 = MJPEG, 0 = H.264 */
  int reserved4[2];    /**< reserved */
  int width;           /**< pixels */
  int height;          /**< pixels */
  float framerate;     /**< frames per second */
  int reserved5;       /**< reserved */
  char fetype[16];     /**< front-end type of the camera */
  int reserved6[2];    /**< reserved */
  int acodec;          /**< 0 = G.711 u-law, else AAC */
  int aenable;         /**< 1 = the audio stream is enabled */
  int reserved7[3];    /**< reserved */
  int volume;          /**< 0 to 100 */
  int osdenable;       /**< 1 = shows the time in the picture */
  int reserved8[3];    /**< reserved */
  int flip;            /**< 1 = upside down */
  int mirror;          /**< 1 = left and right exchanged */
  int ldspoutput;      /**< 1 = local display output is on */
  char acap[16];       /**< capability of the sound card */
  int reserved9;       /**< reserved */
} _availinfo;

/** One row of the device table (by channel) and of the profile table (by profile). */
typedef struct _usbdev_entry {
  char profilename[256]; /**< display name of the profile */
  char usbslot[128];     /**< the port's kernel name, such as "3-1.2" */
  char devname[256];     /**< product name of the device */
  int slot_switch;       /**< the port is switched: 1 = on, 0 = off */
  int stream_type;       /**< 0 = none, 1 = audio, 2 = video, 3 = both */
  int exists;            /**< key "exists" of the channel: 1 = attached */
  int conflictch;        /**< conflict mark: -1, 0 to 9, or 999 */
  char createtime[128];  /**< "2024-03-05 08:15:00" */
  int profile;           /**< 0 to 3, -1 = none */
  int vcodec;            /**< 1 = MJPEG, 0 = H.264 */
  int mjpeg;             /**< 1 when vcodec is MJPEG */
  int aenable;           /**< 1 = the audio stream is enabled */
  char vtag[16];         /**< tag of the video stream */
  int shrenable;         /**< 1 = the stream is shared */
  char hlspath[64];      /**< name of the live link */
} _usbdev_entry;

/** All settings of one profile; from vnode on the fields have the order of _streaminfo. */
typedef struct _profile_info {
  int exists;            /**< key "exists" of the channel: 1 = attached */
  int stream_type;       /**< 0 = none, 1 = audio, 2 = video, 3 = both */
  char profilename[256]; /**< display name of the profile */
  char usbslot[128];     /**< the port's kernel name, such as "3-1.2" */
  char devname[256];     /**< product name of the device */
  int vnode;             /**< N of /dev/videoN, -1 = none */
  int vprofile;          /**< the profile, -1 = none */
  int vcodec;            /**< 1 = MJPEG, 0 = H.264 */
  int venable;           /**< 1 = the video stream is enabled */
  int spsstate;          /**< stream-parameter state */
  int width;             /**< pixels */
  int height;            /**< pixels */
  float framerate;       /**< frames per second */
  int reserved1;         /**< reserved */
  char fetype[16];       /**< front-end type of the camera */
  int anode;             /**< number of the sound card, -1 = none */
  int aprofile;          /**< the profile, -1 = none */
  int acodec;            /**< 0 = G.711 u-law, else AAC */
  int aenable;           /**< 1 = the audio stream is enabled */
  int samplerate;        /**< Hz */
  int channelno;         /**< number of audio channels */
  int bitrate;           /**< bit/s */
  int volume;            /**< 0 to 100 */
  int osdenable;         /**< 1 = shows the time in the picture */
  int reserved2[3];      /**< reserved */
  int flip;              /**< 1 = upside down */
  int mirror;            /**< 1 = left and right exchanged */
  int ldspoutput;        /**< 1 = local display output is on */
  char acap[16];         /**< capability of the sound card */
} _profile_info;

/** A web server, and the user and password for it. */
typedef struct NasServer {
  char host[128];    /**< name or dotted address */
  int port;          /**< TCP port, in host byte order */
  char user[65];     /**< name of the user */
  char password[65]; /**< password of the user */
} NasServer;

/** The share link of one profile. */
typedef struct ShareLinkInfo {
  int profile;           /**< 0 to 3 */
  char profilename[256]; /**< display name of the profile */
  int shrenable;         /**< 1 = the stream is shared */
  int pwdenable;         /**< 1 = the share link has a password */
  char shrpwd[32];       /**< the password */
  char ssid[48];         /**< eight digits */
  char token[64];        /**< 32 hexadecimal characters */
  char hash_string[64];  /**< the hash, 32 hexadecimal characters: the name of the symbolic link */
} ShareLinkInfo;

/** An installed application package. */
typedef struct BndlInfo {
  char version[64];       /**< its version */
  char build[64];         /**< its build number */
  char install_path[128]; /**< folder in which it is installed */
  int enabled;            /**< 1 = enabled */
} BndlInfo;

#ifdef __cplusplus
}
#endif

#endif
