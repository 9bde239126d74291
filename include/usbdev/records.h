/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/*
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

#define USBDEV_CHANNELS 10 /* channels, numbered 0 to 9 */
#define USBDEV_PROFILES 4  /* stream profiles, numbered 0 to 3 */
#define USBDEV_FORMATS 8   /* formats of a capability table */
#define USBDEV_SIZES 32    /* frame sizes of a format */
#define USBDEV_RATES 30    /* frame rates of a size */

/* One USB device as the hotplug path sees it. */
typedef struct _usbdev_des {
  int devtype;       /* 1 = camera; any other value = sound card */
  int node;          /* number of the video device file, or of the sound card */
  char usbslot[128]; /* the port's kernel name, such as "3-1.2" */
  int plugged;       /* 1 = plugged in, 0 = removed */
  char devname[256]; /* product name */
} _usbdev_des;

/* One frame size of a format. */
typedef struct _usbres_des {
  int width;               /* pixels */
  int height;              /* pixels */
  int fps_count;           /* valid entries of fps */
  float fps[USBDEV_RATES]; /* frames per second, in the camera's order */
} _usbres_des;

/* One format of a camera; a capability table is USBDEV_FORMATS of these. */
typedef struct _usbfmt_des {
  int index;                     /* the camera's own index of the format */
  int codec;                     /* 1 = MJPEG; 0 = raw YUYV, encoded as H.264 by the host */
  int res_count;                 /* valid entries of res */
  _usbres_des res[USBDEV_SIZES]; /* in the camera's order */
} _usbfmt_des;

/* What the hotplug handler reports about the channel that a new camera conflicts with. */
typedef struct _usbdev_conflict {
  char profilename[256];
  char devname[256]; /* of the last channel that was looked at */
  int channel;
  int profile;
} _usbdev_conflict;

/* One channel, or one newly found device, during synchronisation. */
typedef struct _usbdev_update {
  int vnode;         /* video device number, -1 = none */
  int anode;         /* sound card number, -1 = none */
  char usbslot[128]; /* the port's kernel name */
  int state;         /* -1 = never configured, else the channel key "exists" */
  char devname[256];
  int slot_switch; /* 1 = on, 0 = off, -1 = not stored */
  int profile;     /* 0 to 3, -1 = none */
  char hlspath[64];
  char hash[64]; /* hash of the enabled share link, else empty */
} _usbdev_update;

/* The stream settings of one profile. */
typedef struct _streaminfo {
  unsigned char header[16]; /* for the caller's use; is sent with the change notification */
  int channel;
  int stream_type; /* 0 = none, 1 = audio, 2 = video, 3 = both */
  int slot_switch;
  int vnode;
  int vprofile;
  int vcodec; /* 1 = MJPEG, 0 = H.264 */
  int venable;
  int spsstate;
  int width;       /* pixels */
  int height;      /* pixels */
  float framerate; /* frames per second */
  int reserved1;
  char fetype[16];
  int anode;
  int aprofile;
  int acodec; /* 0 = G.711 u-law, else AAC */
  int aenable;
  int samplerate; /* Hz */
  int channelno;
  int bitrate; /* bit/s */
  int volume;  /* 0 to 100 */
  int osdenable;
  int reserved2[3];
  int flip;
  int mirror;
  int ldspoutput;
  char vtag[16];
} _streaminfo;

/* One channel of the availability queries; from vnode on the fields have the order of _streaminfo. */
typedef struct _availinfo {
  int reserved1;
  int stream_type; /* -1 = not available, 0 = none, 1 = audio, 2 = video, 3 = both */
  char reserved2[256];
  char usbslot[128];
  char devname[256];
  int vnode;
  int reserved3;
  int vcodec;
  int reserved4[2];
  int width;
  int height;
  float framerate;
  int reserved5;
  char fetype[16];
  int reserved6[2];
  int acodec;
  int aenable;
  int reserved7[3];
  int volume;
  int osdenable;
  int reserved8[3];
  int flip;
  int mirror;
  int ldspoutput;
  char acap[16];
  int reserved9;
} _availinfo;

/* One row of the device table (by channel) and of the profile table (by profile). */
typedef struct _usbdev_entry {
  char profilename[256];
  char usbslot[128];
  char devname[256];
  int slot_switch;
  int stream_type; /* 0 = none, 1 = audio, 2 = video, 3 = both */
  int exists;
  int conflictch;
  char createtime[128]; /* "2024-03-05 08:15:00" */
  int profile;
  int vcodec;
  int mjpeg; /* 1 when vcodec is MJPEG */
  int aenable;
  char vtag[16];
  int shrenable;
  char hlspath[64];
} _usbdev_entry;

/* All settings of one profile; from vnode on the fields have the order of _streaminfo. */
typedef struct _profile_info {
  int exists;
  int stream_type;
  char profilename[256];
  char usbslot[128];
  char devname[256];
  int vnode;
  int vprofile;
  int vcodec;
  int venable;
  int spsstate;
  int width;
  int height;
  float framerate;
  int reserved1;
  char fetype[16];
  int anode;
  int aprofile;
  int acodec;
  int aenable;
  int samplerate;
  int channelno;
  int bitrate;
  int volume;
  int osdenable;
  int reserved2[3];
  int flip;
  int mirror;
  int ldspoutput;
  char acap[16];
} _profile_info;

/* A web server, and the user and password for it. */
typedef struct NasServer {
  char host[128]; /* name or dotted address */
  int port;       /* TCP port, in host byte order */
  char user[65];
  char password[65];
} NasServer;

/* The share link of one profile. */
typedef struct ShareLinkInfo {
  int profile;
  char profilename[256];
  int shrenable;
  int pwdenable;
  char shrpwd[32];
  char ssid[48];        /* eight digits */
  char token[64];       /* 32 hexadecimal characters */
  char hash_string[64]; /* the hash, 32 hexadecimal characters: the name of the symbolic link */
} ShareLinkInfo;

/* An installed application package. */
typedef struct BndlInfo {
  char version[64];
  char build[64];
  char install_path[128];
  int enabled;
} BndlInfo;

#ifdef __cplusplus
}
#endif

#endif
