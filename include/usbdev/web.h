/*
 * HTTP client, encodings, login, link identifiers, share links and the state of the live streams.
 *
 * The words of the comments are defined in <usbdev/usbdev.h>.
 */
#ifndef USBDEV_WEB_H
#define USBDEV_WEB_H

#include <usbdev/records.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- HTTP client and socket I/O --- */

extern char NVR_CGI[256];
int connect_host(const NasServer *server, char *out, int bufsize, unsigned chunk, int use_auth);
void error(const char *text);
int socket_read(int sock, char *buf, int len);
int socket_write(int sock, const char *text);
int http_open(int *sock, const char *host);
int http_read_line(int sock, char *buf, int max);
int http_skip_nvr_http_header(int sock);
int http_send_cmd(int sock, const char *host, const char *path, const char *user, const char *password);
int http_close(int sock);
int getNVR_AUTH(const char *user, const char *password, char *out);
int get_next_line(const char *text, char *out);

/* --- Base64 and URL encoding --- */

int Base64enc(const unsigned char *in, int len, char *out);
char *Base64encs(const char *in, char *out);
int Base64dec(const char *in, unsigned char *out);
char *Base64decs(const char *in, char *out);
int url_encode(char *out, const char *in, int len);

/* --- host login sessions --- */

int nas_auth(const NasServer *server, char *sid);
int nas_logout(const NasServer *server, const char *sid);
int nas_sid_auth(const NasServer *server, const char *sid);
int write_sid(const char *reply, char *sid);
int vl_auth(const char *user, const char *password);
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

int vl_set_share_link(ShareLinkInfo *info);
int vl_get_share_link(ShareLinkInfo *info);
int vl_renew_share_link(ShareLinkInfo *info);
int remove_hash_link(const char *section);
int vl_check_share_link_ssid(const char *ssid);
int vl_validate_chliveview(int profile, int *code);
int vl_ssid_auth(const char *ssid, const char *token, int *profile, int *code);

/* --- live streaming status --- */

int vl_get_hls_status(int profile, int *status);
int vl_StreamNotify(const void *message);
int vl_SourcerStreamingProcess(int number, int kind);
int mn_update_pfstate(int profile, int value);
int vl_get_pidvid(int profile, char *pidvid);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
