/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/*
 * HTTP client, encodings, login, link identifiers, share links and the state of the live streams.
 *
 * <usbdev/usbdev.h> explains the terms of the comments.
 */
#ifndef USBDEV_WEB_H
#define USBDEV_WEB_H

#include <limits.h> /* defines the macros that name the C library, as each of its headers does */
#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- HTTP client and socket I/O: takes no lock, runs nothing --- */

/*
 * Path of the request that connect_host sends. There is one for the whole process: connect_host and the login functions
 * below share it, so only one of them may run at a time.
 */
extern char NVR_CGI[256];

/*
 * Sends the request of NVR_CGI to a server and reads the whole reply. A socket that cannot be read or written ends the
 * process, see error.
 * server (in). out (out): at least bufsize bytes, not terminated. bufsize (in): longer replies are cut. chunk (in):
 * bytes per read, at most 2048. use_auth (in): 0 sends no user and password, any other value sends them. Returns the
 * number of bytes stored, or -1 when it cannot connect.
 */
int connect_host(const NasServer *server, char *out, int bufsize, unsigned chunk, int use_auth);

/*
 * void error(const char *text)
 *
 * Prints the text and the system's error on standard error and ends the process with status 0. text (in). Does not
 * return.
 *
 * Beware: the C library has a function of this name, too. When a program that is linked against this library calls
 * error() of <error.h>, this function is called, and the program ends with status 0. Call err() of <err.h> or
 * error_at_line() in such a program. You may include both headers; the first one decides which error() a call in the
 * source means. In C++, with <error.h> first, you can call both.
 */
#if !defined(_ERROR_H)
#if defined(__GLIBC__) && defined(__has_include)
/*
 * By its whole path, because an application may have an error.h of its own. If the C library is installed elsewhere, as
 * for a cross compiler, include <error.h> first in a source in C.
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
 * Returns the number of bytes received; 0 when the peer has closed the connection; -1 when waiting failed, -2 when the
 * time is over, -3 when reading failed, -4 in any other case.
 */
int socket_read(int sock, char *buf, int len);

/*
 * Waits up to 120 seconds for a socket and sends a text. sock (in). text (in). Returns the number of bytes sent, or -1
 * to -4 as socket_read does.
 */
int socket_write(int sock, const char *text);

/*
 * Connects to TCP port 80 of a host. sock (out). host (in): name or dotted address. Several threads may call it at the
 * same time.
 */
int http_open(int *sock, const char *host);

/*
 * Reads up to a line feed, which is not stored. sock (in). buf (out): max bytes; not terminated when all of them were
 * filled. max (in). Returns the number of bytes stored, or -1.
 */
int http_read_line(int sock, char *buf, int max);

/*
 * Reads the head of a reply, up to three line feeds in a row, and drops it. sock (in). Returns 1; 0 when the head does
 * not end within 512 bytes; -1 when reading failed; -2 when the status is not 200 OK.
 */
int http_skip_nvr_http_header(int sock);

/*
 * Sends a request with user and password. sock (in). host, path (in): a request line has at most 2047 bytes. user,
 * password (in): at most 128 bytes together. Fails, and sends nothing, when one of them is longer.
 */
int http_send_cmd(int sock, const char *host, const char *path, const char *user, const char *password);

/* Closes a socket; ignores a negative one. sock (in). Returns 0. */
int http_close(int sock);

/*
 * Makes the text of an authorization line, "Basic ...". user, password (in): at most 128 bytes together.
 * out (out): 256 bytes; untouched when user and password have more. Returns 0.
 */
int getNVR_AUTH(const char *user, const char *password, char *out);

/*
 * Copies the first line of a text, without a line feed and without a terminating zero. text (in). out (out): as large
 * as the line. Returns the line's length, or -1 when the text has no line feed.
 */
int get_next_line(const char *text, char *out);

/* --- Base64 and URL encoding: takes no lock, runs nothing; null is not allowed --- */

/*
 * Encodes bytes. in (in): len bytes. out (out): 4 characters for each 3 bytes or part of them, and a zero. Returns the
 * number of characters written, without the zero.
 */
int Base64enc(const unsigned char *in, int len, char *out);

/* Encodes a text. in (in). out (out): as for Base64enc. Returns out. */
char *Base64encs(const char *in, char *out);

/*
 * Decodes a text, up to its first "=". in (in): not checked; a character outside the alphabet spoils its group of four.
 * out (out): 3 bytes for each 4 characters, and one more. Returns the number of bytes written, without the zero at the
 * end.
 */
int Base64dec(const char *in, unsigned char *out);

/* Decodes a text to a text. in (in). out (out): as for Base64dec. Returns out. */
char *Base64decs(const char *in, char *out);

/*
 * Escapes "/", "~" and blanks in the query of a URL, which begins after its first "?". out (out): up to 3 characters
 * for each byte, not terminated. in (in): len bytes. Returns 0.
 */
int url_encode(char *out, const char *in, int len);

/* --- login sessions at the host: take no lock, only one at a time in a process --- */

/* Logs in. server (in): with user and password. sid (out): 128 bytes, the session's id. */
int nas_auth(const NasServer *server, char *sid);

/* Ends a session. server, sid (in). Returns the size of the reply, or -1. */
int nas_logout(const NasServer *server, const char *sid);

/* Checks a session: returns 0 when it is valid, else -1. server, sid (in). */
int nas_sid_auth(const NasServer *server, const char *sid);

/* Finds the session's id in the reply to a login. reply (in). sid (out): 128 bytes. Fails when there is none. */
int write_sid(const char *reply, char *sid);

/*
 * Checks a user and a password with a login at the host, and logs out again after one second. user (in): at most 64
 * bytes, without control characters. password (in): at most 64 bytes. Runs commands. Returns 0 when the host accepts
 * them, else -1.
 */
int vl_auth(const char *user, const char *password);

/* Checks a session at the host: returns 0 when it is valid, -1 when not, -10 for null. sid (in). Runs commands. */
int vl_sid_auth(const char *sid);

/* --- link identifiers: take no lock --- */

/*
 * Makes the share id of a link: eight decimal digits. Two calls of one process within the same second give the same id.
 * Seeds the process's rand(). Runs nothing. out (out): 9 bytes. Returns 0.
 */
int generate_ssid(char *out);

/*
 * Makes a random identifier of 32 lower-case hexadecimal characters, for tokens and names of links. Runs commands.
 * out (out): 33 bytes; untouched when the host provides no random text. Returns 0.
 */
int generate_hash(char *out);

/*
 * Copies a text without its hyphens and without trailing blanks, line ends and double quotes.
 * in (in/out): loses its trailing blanks, line ends and double quotes, too. out (out): as large as in. Returns the
 * length of in afterwards, with its hyphens.
 */
int strip(char *in, char *out);

/* --- share links --- */

/*
 * Stores the share settings of a profile, and creates or removes the symbolic link of its share link. An enabled link
 * with the same password is kept. Takes the lock; runs commands, "/bin/ln" and "/bin/rm", while it holds the lock.
 * info (in/out): profile, shrenable, pwdenable and shrpwd are read; ssid is set to the stored share id, which a new
 * link keeps; token and hash_string are set when the link is new. Fails, and changes nothing that is stored, when the
 * host provides no random text for them. When the settings cannot be stored, an old symbolic link that had to be
 * removed is removed nevertheless.
 */
int vl_set_share_link(ShareLinkInfo *info);

/*
 * Reads the share settings of a profile. Takes the lock, runs nothing. info (in/out): profile is read, all other fields
 * are set.
 */
int vl_get_share_link(ShareLinkInfo *info);

/*
 * Gives a profile's share link a new share id, token and hash, so that addresses handed out before stop working. Does
 * so, and creates the symbolic link, even when sharing is disabled. Takes the lock; runs commands, "/bin/ln" while it
 * holds the lock. info (in/out): profile is read; ssid, token and hash_string are set. When it fails, the old symbolic
 * link has been removed nevertheless.
 */
int vl_renew_share_link(ShareLinkInfo *info);

/*
 * Removes the symbolic link of the share link that a section of the file stores. Takes the lock; runs commands:
 * "/bin/rm". section (in): such as "ch3"; any name.
 */
int remove_hash_link(const char *section);

/*
 * Finds the channel with a share id. Takes the lock, runs nothing. ssid (in): the empty text is found in the first
 * channel without a share id. Returns the channel's profile, or -1.
 */
int vl_check_share_link_ssid(const char *ssid);

/*
 * Checks whether the stream of a profile can be shown. Takes the lock, runs nothing.
 * profile (in): 0 to 3. code (out): -1 = it can; 9001 device not attached, 9003 no video or the file cannot be opened,
 * 9004 sound only, 9007 waits for another channel or unsupported, 9009 port switched off. Returns 0 when it can, else
 * -1; code is untouched when no channel serves the profile.
 */
int vl_validate_chliveview(int profile, int *code);

/*
 * Checks whether a viewer's share id and token open a stream. Does not check the link's password, which is the caller's
 * task. Takes the lock, runs nothing.
 * ssid, token (in). profile (out). code (out): as for vl_validate_chliveview, or 9000 wrong token, 9010 sharing
 * disabled, 9011 unknown share id. Returns 0 when they do, else -1.
 */
int vl_ssid_auth(const char *ssid, const char *token, int *profile, int *code);

/* --- state of the streams --- */

/*
 * Checks whether a profile's playlist exists. Takes no lock. Runs commands: "/sbin/readcfg".
 * profile (in): not checked. status (out): 1 if so, else 0. Returns 0.
 */
int vl_get_hls_status(int profile, int *status);

/* Sends a signal to the streaming service, TCP port 10170. Takes no lock, runs nothing. message (in): 32 bytes. */
int vl_StreamNotify(const void *message);

/*
 * Checks whether the process runs that reads a camera's pictures. Takes no lock. Runs commands. number (in): N; the
 * processes of node 10 are also found for node 1. kind (in): the process to look for: 0 = "HDpipe", for pictures that
 * the host encodes, else "v4l2_read", for those that the camera compresses. Returns 1 if it runs, else 0.
 */
int vl_SourcerStreamingProcess(int number, int kind);

/*
 * Stores whether a profile's stream is available, in "/etc/config/vl_pfstate.conf". Takes the lock, runs nothing.
 * profile (in): not checked. value (in): any.
 */
int mn_update_pfstate(int profile, int value);

/*
 * Finds the vendor and product ids of a profile's camera. Takes the lock. Runs commands: "/sbin/udevadm".
 * profile (in): 0 to 3. pidvid (out): 16 bytes, such as "046d:0825". Returns 0; -1 when no channel serves the profile,
 * -2 when the file cannot be opened, -3 when nothing was found.
 */
int vl_get_pidvid(int profile, char *pidvid);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
