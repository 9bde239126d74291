/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
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

/** @name HTTP client and socket I/O: takes no lock, runs nothing
 * @{ */

/**
 * Path of the request that connect_host() sends. There is one for the whole process: connect_host() and the login
 * functions share it, so only one of them may run at a time.
 */
extern char NVR_CGI[256];

/**
 * Sends the request of NVR_CGI to a server and reads the whole reply. A socket that cannot be read or written ends the
 * process, see error().
 *
 * @param[in] server
 * @param[out] out at least bufsize bytes, not terminated
 * @param[in] bufsize longer replies are cut
 * @param[in] chunk bytes per read, at most 2048
 * @param[in] use_auth 0 sends no user and password, any other value sends them
 * @return the number of bytes stored, or -1 when it cannot connect
 */
int connect_host(const NasServer *server, char *out, int bufsize, unsigned chunk, int use_auth);

/**
 * @fn void error(const char *text)
 * Prints the text and the system's error on standard error and ends the process with status 0. Does not return.
 *
 * Beware: the C library has a function of this name, too. When a program that is linked against this library calls
 * error() of <error.h>, this function is called, and the program ends with status 0. Call err() of <err.h> or
 * error_at_line() in such a program. You may include both headers; the first one decides which error() a call in the
 * source means. In C++, with <error.h> first, you can call both.
 *
 * @param[in] text
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

/**
 * Waits up to 120 seconds for a socket and receives once.
 *
 * @param[in] sock
 * @param[out] buf len + 1 bytes, terminated
 * @param[in] len
 * @return the number of bytes received; 0 when the peer has closed the connection; -1 when waiting failed, -2 when the
 *   time is over, -3 when reading failed, -4 in any other case
 */
int socket_read(int sock, char *buf, int len);

/**
 * Waits up to 120 seconds for a socket and sends a text.
 *
 * @param[in] sock
 * @param[in] text
 * @return the number of bytes sent, or -1 to -4 as socket_read() does
 */
int socket_write(int sock, const char *text);

/**
 * Connects to TCP port 80 of a host. Several threads may call it at the same time.
 *
 * @param[out] sock
 * @param[in] host name or dotted address
 */
int http_open(int *sock, const char *host);

/**
 * Reads up to a line feed, which is not stored.
 *
 * @param[in] sock
 * @param[out] buf max bytes; not terminated when all of them were filled
 * @param[in] max
 * @return the number of bytes stored, or -1
 */
int http_read_line(int sock, char *buf, int max);

/**
 * Reads the head of a reply, up to three line feeds in a row, and drops it.
 *
 * @param[in] sock
 * @return 1; 0 when the head does not end within 512 bytes; -1 when reading failed; -2 when the status is not 200 OK
 */
int http_skip_nvr_http_header(int sock);

/**
 * Sends a request with user and password. Fails, and sends nothing, when a text is longer than stated here.
 *
 * @param[in] sock
 * @param[in] host,path a request line has at most 2047 bytes
 * @param[in] user,password at most 128 bytes together
 */
int http_send_cmd(int sock, const char *host, const char *path, const char *user, const char *password);

/**
 * Closes a socket; ignores a negative one.
 *
 * @param[in] sock
 * @return 0
 */
int http_close(int sock);

/**
 * Makes the text of an authorization line, "Basic ...".
 *
 * @param[in] user,password at most 128 bytes together
 * @param[out] out 256 bytes; untouched when user and password have more
 * @return 0
 */
int getNVR_AUTH(const char *user, const char *password, char *out);

/**
 * Copies the first line of a text, without a line feed and without a terminating zero.
 *
 * @param[in] text
 * @param[out] out as large as the line
 * @return the line's length, or -1 when the text has no line feed
 */
int get_next_line(const char *text, char *out);

/** @} */

/** @name Base64 and URL encoding: takes no lock, runs nothing; null is not allowed
 * @{ */

/**
 * Encodes bytes.
 *
 * @param[in] in len bytes
 * @param[in] len
 * @param[out] out 4 characters for each 3 bytes or part of them, and a zero
 * @return the number of characters written, without the zero
 */
int Base64enc(const unsigned char *in, int len, char *out);

/**
 * Encodes a text.
 *
 * @param[in] in
 * @param[out] out as for Base64enc()
 * @return out
 */
char *Base64encs(const char *in, char *out);

/**
 * Decodes a text, up to its first "=".
 *
 * @param[in] in not checked; a character outside the alphabet spoils its group of four
 * @param[out] out 3 bytes for each 4 characters, and one more
 * @return the number of bytes written, without the zero at the end
 */
int Base64dec(const char *in, unsigned char *out);

/**
 * Decodes a text to a text.
 *
 * @param[in] in
 * @param[out] out as for Base64dec()
 * @return out
 */
char *Base64decs(const char *in, char *out);

/**
 * Escapes "/", "~" and blanks in the query of a URL, which begins after its first "?".
 *
 * @param[out] out up to 3 characters for each byte, not terminated
 * @param[in] in len bytes
 * @param[in] len
 * @return 0
 */
int url_encode(char *out, const char *in, int len);

/** @} */

/** @name Login sessions at the host: take no lock, only one at a time in a process
 * @{ */

/**
 * Logs in.
 *
 * @param[in] server with user and password
 * @param[out] sid 128 bytes, the session's id
 */
int nas_auth(const NasServer *server, char *sid);

/**
 * Ends a session.
 *
 * @param[in] server,sid
 * @return the size of the reply, or -1
 */
int nas_logout(const NasServer *server, const char *sid);

/**
 * Checks a session.
 *
 * @param[in] server,sid
 * @return 0 when it is valid, else -1
 */
int nas_sid_auth(const NasServer *server, const char *sid);

/**
 * Finds the session's id in the reply to a login. Fails when there is none.
 *
 * @param[in] reply
 * @param[out] sid 128 bytes
 */
int write_sid(const char *reply, char *sid);

/**
 * Checks a user and a password with a login at the host, and logs out again after one second. Runs
 * commands.
 *
 * @param[in] user at most 64 bytes, without control characters
 * @param[in] password at most 64 bytes
 * @return 0 when the host accepts them, else -1
 */
int vl_auth(const char *user, const char *password);

/**
 * Checks a session at the host. Runs commands.
 *
 * @param[in] sid
 * @return 0 when it is valid, -1 when not, -10 for null
 */
int vl_sid_auth(const char *sid);

/** @} */

/** @name Link identifiers: take no lock
 * @{ */

/**
 * Makes the share id of a link: eight decimal digits. Two calls of one process within the same second give the same id.
 * Seeds the process's rand(). Runs nothing.
 *
 * @param[out] out 9 bytes
 * @return 0
 */
int generate_ssid(char *out);

/**
 * Makes a random identifier of 32 lower-case hexadecimal characters, for tokens and names of links. Runs commands.
 *
 * @param[out] out 33 bytes; untouched when the host provides no random text
 * @return 0
 */
int generate_hash(char *out);

/**
 * Copies a text without its hyphens and without trailing blanks, line ends and double quotes.
 *
 * @param[in,out] in loses its trailing blanks, line ends and double quotes, too
 * @param[out] out as large as in
 * @return the length of in afterwards, with its hyphens
 */
int strip(char *in, char *out);

/** @} */

/** @name Share links
 * @{ */

/**
 * Stores the share settings of a profile, and creates or removes the symbolic link of its share link. An enabled link
 * with the same password is kept. Takes the lock; runs commands, "/bin/ln" and "/bin/rm", while it holds the lock.
 * Fails, and changes nothing that is stored, when the host provides no random text for token and hash. When the
 * settings cannot be stored, an old symbolic link that had to be removed is removed nevertheless.
 *
 * @param[in,out] info profile, shrenable, pwdenable and shrpwd are read; ssid is set to the stored share id, which a
 *   new link keeps; token and hash_string are set when the link is new
 */
int vl_set_share_link(ShareLinkInfo *info);

/**
 * Reads the share settings of a profile. Takes the lock, runs nothing.
 *
 * @param[in,out] info profile is read, all other fields are set
 */
int vl_get_share_link(ShareLinkInfo *info);

/**
 * Gives a profile's share link a new share id, token and hash, so that addresses handed out before stop working. Does
 * so, and creates the symbolic link, even when sharing is disabled. Takes the lock; runs commands, "/bin/ln" while it
 * holds the lock. When it fails, the old symbolic link has been removed nevertheless.
 *
 * @param[in,out] info profile is read; ssid, token and hash_string are set
 */
int vl_renew_share_link(ShareLinkInfo *info);

/**
 * Removes the symbolic link of the share link that a section of the file stores. Takes the lock; runs commands:
 * "/bin/rm".
 *
 * @param[in] section such as "ch3"; any name
 */
int remove_hash_link(const char *section);

/**
 * Finds the channel with a share id. Takes the lock, runs nothing.
 *
 * @param[in] ssid the empty text is found in the first channel without a share id
 * @return the channel's profile, or -1
 */
int vl_check_share_link_ssid(const char *ssid);

/**
 * Checks whether the stream of a profile can be shown. Takes the lock, runs nothing.
 *
 * @param[in] profile 0 to 3
 * @param[out] code -1 = it can; 9001 device not attached, 9003 no video or the file cannot be opened, 9004 sound only,
 *   9007 waits for another channel or unsupported, 9009 port switched off
 * @return 0 when it can, else -1; code is untouched when no channel serves the profile
 */
int vl_validate_chliveview(int profile, int *code);

/**
 * Checks whether a viewer's share id and token open a stream. Does not check the link's password, which is the caller's
 * task. Takes the lock, runs nothing.
 *
 * @param[in] ssid,token
 * @param[out] profile
 * @param[out] code as for vl_validate_chliveview(), or 9000 wrong token, 9010 sharing disabled, 9011 unknown share id
 * @return 0 when they do, else -1
 */
int vl_ssid_auth(const char *ssid, const char *token, int *profile, int *code);

/** @} */

/** @name State of the streams
 * @{ */

/**
 * Checks whether a profile's playlist exists. Takes no lock. Runs commands: "/sbin/readcfg".
 *
 * @param[in] profile not checked
 * @param[out] status 1 if so, else 0
 * @return 0
 */
int vl_get_hls_status(int profile, int *status);

/**
 * Sends a signal to the streaming service, TCP port 10170. Takes no lock, runs nothing.
 *
 * @param[in] message 32 bytes
 */
int vl_StreamNotify(const void *message);

/**
 * Checks whether the process runs that reads a camera's pictures. Takes no lock. Runs commands.
 *
 * @param[in] number N; the processes of node 10 are also found for node 1
 * @param[in] kind the process to look for: 0 = "HDpipe", for pictures that the host encodes, else "v4l2_read", for
 *   those that the camera compresses
 * @return 1 if it runs, else 0
 */
int vl_SourcerStreamingProcess(int number, int kind);

/**
 * Stores whether a profile's stream is available, in "/etc/config/vl_pfstate.conf". Takes the lock, runs nothing.
 *
 * @param[in] profile not checked
 * @param[in] value any
 */
int mn_update_pfstate(int profile, int value);

/**
 * Finds the vendor and product ids of a profile's camera. Takes the lock. Runs commands: "/sbin/udevadm".
 *
 * @param[in] profile 0 to 3
 * @param[out] pidvid 16 bytes, such as "046d:0825"
 * @return 0; -1 when no channel serves the profile, -2 when the file cannot be opened, -3 when nothing was found
 */
int vl_get_pidvid(int profile, char *pidvid);

/** @} */

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
