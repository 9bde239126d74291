/*
 * HTTP client, encodings, login, link identifiers, share links and the state of the live streams.
 *
 * The words of the comments are defined in <usbdev/usbdev.h>.
 */
#ifndef USBDEV_WEB_H
#define USBDEV_WEB_H

#include <limits.h> /* which tells the C library, as every header of it does */
#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- HTTP client and socket I/O: takes no lock, runs nothing --- */

/*
 * Path of the request that connect_host sends. One for the whole process: connect_host and the host login sessions
 * below share it, and come one at a time.
 */
extern char NVR_CGI[256];

/*
 * Sends the request of NVR_CGI to a server and reads the whole reply. A socket that cannot be read or written ends the
 * process, see error.
 * server (in). out (out): at least bufsize bytes, not terminated. bufsize (in): longer replies are cut. chunk (in):
 * bytes per read, at most 2048. use_auth (in): 1 sends user and password. Returns the bytes stored, or -1 without a
 * connection.
 */
int connect_host(const NasServer *server, char *out, int bufsize, unsigned chunk, int use_auth);

/*
 * void error(const char *text)
 *
 * Prints the text and the system's error on standard error and ends the process with status 0. text (in). Does not
 * return.
 *
 * Beware: the C library has a function of this name, too. A program that is linked against this library and calls
 * error() of <error.h> reaches this one, and so ends with status 0. Use err() of <err.h>, or error_at_line(), there.
 * Both headers may be included; the first one settles which error() the source means. In C++, with <error.h> first,
 * both can be called.
 */
#if !defined(_ERROR_H)
#if defined(__GLIBC__) && defined(__has_include)
/*
 * By its whole path: an application may have an error.h of its own, which is none of this header's business. With a C
 * library that is elsewhere, as a cross compiler's may be, a source in C includes <error.h> first.
 */
#if __has_include("/usr/include/error.h")
#define error usbdev_not_this_error
#include "/usr/include/error.h"
#undef error
#endif
#endif
void error(const char *text);
#elif defined(__cplusplus)
extern "C++" void error(const char *text) __asm__("error");
#endif

/*
 * Waits up to 120 seconds for a socket and receives once. sock (in). buf (out): len + 1 bytes, terminated. len (in).
 * Returns the bytes received, -1 when it cannot be waited for, -2 after the time, -3 when it cannot be read, -4
 * otherwise.
 */
int socket_read(int sock, char *buf, int len);

/*
 * Waits up to 120 seconds for a socket and sends a text. sock (in). text (in). Returns the bytes sent, or as
 * socket_read.
 */
int socket_write(int sock, const char *text);

/* Connects to port 80 of a host. sock (out). host (in): name or dotted address. Several threads may at once. */
int http_open(int *sock, const char *host);

/*
 * Reads up to a line feed, which is not stored. sock (in). buf (out): max bytes; not terminated when all of them were
 * filled. max (in). Returns the bytes stored, or -1.
 */
int http_read_line(int sock, char *buf, int max);

/*
 * Reads past the head of a reply. sock (in). Returns 1; 0 when 512 bytes were no whole head; -1 when it cannot be read;
 * -2 when the status is not 200 OK.
 */
int http_skip_nvr_http_header(int sock);

/*
 * Sends a request with credentials. sock (in). host, path (in): request lines hold 2047 bytes. user, password (in): up
 * to 128 bytes together.
 */
int http_send_cmd(int sock, const char *host, const char *path, const char *user, const char *password);

/* Closes a socket; a negative one is let be. sock (in). Returns 0. */
int http_close(int sock);

/*
 * Makes the text of an authorization line, "Basic ...". user, password (in): up to 128 bytes together.
 * out (out): 256 bytes; untouched when they have more. Returns 0.
 */
int getNVR_AUTH(const char *user, const char *password, char *out);

/*
 * Copies the first line of a text, without line feed and terminating zero. text (in). out (out): as large as the line.
 * Returns its length, or -1 when the text has no line feed.
 */
int get_next_line(const char *text, char *out);

/* --- Base64 and URL encoding: takes no lock, runs nothing; null is not allowed --- */

/*
 * Encodes bytes. in (in): len bytes. out (out): 4 characters per started group of 3 bytes, and a zero. Returns the
 * characters written.
 */
int Base64enc(const unsigned char *in, int len, char *out);

/* Encodes a text. in (in). out (out): as for Base64enc. Returns out. */
char *Base64encs(const char *in, char *out);

/* Decodes a text. in (in). out (out): 3 bytes per 4 characters, and one more. Returns the bytes written. */
int Base64dec(const char *in, unsigned char *out);

/* Decodes a text to a text. in (in). out (out): as for Base64dec. Returns out. */
char *Base64decs(const char *in, char *out);

/*
 * Escapes "/", "~" and blanks in the query of a URL, which begins behind its first "?". out (out): up to 3 characters
 * per byte, not terminated. in (in): len bytes. Returns 0.
 */
int url_encode(char *out, const char *in, int len);

/* --- host login sessions: takes no lock, one at a time --- */

/* Logs in. server (in): with user and password. sid (out): 128 bytes, the session. */
int nas_auth(const NasServer *server, char *sid);

/* Ends a session. server, sid (in). Returns the size of the reply, or -1. */
int nas_logout(const NasServer *server, const char *sid);

/* Tells whether a session is valid: 0 if so, else -1. server, sid (in). */
int nas_sid_auth(const NasServer *server, const char *sid);

/* Finds the session in the reply to a login. reply (in). sid (out): 128 bytes. Fails when there is none. */
int write_sid(const char *reply, char *sid);

/*
 * Tells whether the host accepts a user: 0 if so, else -1. user (in): without control characters. password (in). Runs
 * commands.
 */
int vl_auth(const char *user, const char *password);

/* Tells whether the host knows a session: 0 if so, -1 if not, -10 for null. sid (in). Runs commands. */
int vl_sid_auth(const char *sid);

/* --- link identifiers: take no lock --- */

/*
 * Makes a share link's short identifier: eight decimal digits. Two calls of one process within a second give the same
 * one. Seeds the process's rand(). Runs nothing. out (out): 9 bytes. Returns 0.
 */
int generate_ssid(char *out);

/*
 * Makes a random identifier of 32 lower-case hexadecimal characters, for tokens and link names. Runs commands.
 * out (out): 33 bytes; untouched when the host gives no random text. Returns 0.
 */
int generate_hash(char *out);

/*
 * Copies a text without its hyphens and without trailing blanks, line ends and double quotes.
 * in (in/out): loses its trailing part. out (out): as large as in. Returns the length of in afterwards, its hyphens
 * counted.
 */
int strip(char *in, char *out);

/* --- share links --- */

/*
 * Stores the share settings of a profile and makes or removes its public link. An enabled link with the same password
 * is kept. Takes the lock; runs commands, "/bin/ln" and "/bin/rm", with it held.
 * info (in/out): profile, shrenable, pwdenable and shrpwd are read; ssid is set to the stored one, which a new link
 * keeps; token and hash_string are set when the link is new. Fails, what is stored staying as it is, when the host
 * gives no random text for them. When the settings cannot be stored, a link that was to go is gone all the same.
 */
int vl_set_share_link(ShareLinkInfo *info);

/*
 * Reads the share settings of a profile. Takes the lock, runs nothing. info (in/out): profile is read, the rest is set.
 */
int vl_get_share_link(ShareLinkInfo *info);

/*
 * Gives a profile's share link new identifiers, so that links handed out before end. Takes the lock; runs commands,
 * "/bin/ln" with it held. info (in/out): profile is read; ssid, token and hash_string are set. A renewal that fails has
 * removed the public link all the same.
 */
int vl_renew_share_link(ShareLinkInfo *info);

/*
 * Removes the public link that a section of the file names. Takes the lock; runs commands: "/bin/rm". section (in):
 * such as "ch3"; any name.
 */
int remove_hash_link(const char *section);

/* Returns the profile of the channel with this share id, or -1. Takes the lock, runs nothing. ssid (in). */
int vl_check_share_link_ssid(const char *ssid);

/*
 * Tells whether a profile's live view can be shown. Takes the lock, runs nothing.
 * profile (in): 0 to 3. code (out): -1 = it can; 9001 device gone, 9003 no video, 9004 sound only, 9007 parked or
 * unsupported, 9009 slot switched off. Returns 0 when it can, else -1; code is untouched when no channel serves the
 * profile.
 */
int vl_validate_chliveview(int profile, int *code);

/*
 * Tells whether a viewer's share id and token open a live view. Takes the lock, runs nothing.
 * ssid, token (in). profile (out). code (out): as for vl_validate_chliveview, or 9000 wrong token, 9010 link disabled,
 * 9011 share id unknown. Returns 0 when they do, else -1.
 */
int vl_ssid_auth(const char *ssid, const char *token, int *profile, int *code);

/* --- live streaming status --- */

/*
 * Tells whether a profile's playlist exists. Takes no lock. Runs commands: "/sbin/readcfg".
 * profile (in): not checked. status (out): 1 or 0. Returns 0.
 */
int vl_get_hls_status(int profile, int *status);

/* Sends a signal to the streaming service, port 10170 (TCP). Takes no lock, runs nothing. message (in): 32 bytes. */
int vl_StreamNotify(const void *message);

/*
 * Tells whether a source process runs: 1 or 0. Takes no lock. Runs commands. number (in): of the device. kind (in):
 * which process to look for: 0 = "HDpipe", for pictures that the host encodes, else "v4l2_read", for those of the
 * camera.
 */
int vl_SourcerStreamingProcess(int number, int kind);

/*
 * Stores whether a profile is available, in "/etc/config/vl_pfstate.conf". Takes the lock, runs nothing. profile (in):
 * not checked.
 * value (in).
 */
int mn_update_pfstate(int profile, int value);

/*
 * Finds the vendor and product of a profile's camera. Takes the lock. Runs commands: "/sbin/udevadm".
 * profile (in): 0 to 3. pidvid (out): 16 bytes, such as "046d:0825". Returns 0; -1 when no channel serves the profile,
 * -2 when the file cannot be opened, -3 when nothing was found.
 */
int vl_get_pidvid(int profile, char *pidvid);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
