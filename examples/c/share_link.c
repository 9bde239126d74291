/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* Shares the stream of a profile, and prints the address of its page: share_link PROFILE */
#include <stdio.h>
#include <usbdev/usbdev.h>

#include "number.h"

int main(int argc, char **argv) {
  ShareLinkInfo link = {.shrenable = 1};
  if (argc != 2 || !readNumber(argv[1], &link.profile)) {
    fprintf(stderr, "usage: share_link PROFILE\n");
    return 2;
  }
  /* A link that was there is kept, and its token has to be read. */
  if (vl_set_share_link(&link) != 0 || vl_get_share_link(&link) != 0) {
    fprintf(stderr, "share_link: the stream cannot be shared\n");
    return 1;
  }
  printf("/share?ssid=%s&token=%s\n", link.ssid, link.token);
  return 0;
}
