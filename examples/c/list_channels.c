/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* Prints the channels that have a device: list_channels */
#include <ctype.h>
#include <stdio.h>
#include <usbdev/usbdev.h>

/* A device may call itself anything; what could control the terminal is printed as a question mark. */
static void printName(const char *name) {
  for (; *name != '\0'; ++name) putchar(isprint((unsigned char)*name) ? *name : '?');
}

static void printChannel(int channel, const _usbdev_entry *entry) {
  printf("channel %d  %s  ", channel, entry->usbslot);
  printName(entry->devname);
  if (entry->profile >= 0) printf("  profile %d", entry->profile);
  if (entry->conflictch >= 0 && entry->conflictch < USBDEV_CHANNELS) {
    printf("  waits for channel %d", entry->conflictch);
  }
  printf("\n");
}

int main(void) {
  _usbdev_entry rows[USBDEV_CHANNELS];
  if (vl_get_devpf_list(rows) != 0) {
    fprintf(stderr, "list_channels: the channels cannot be read\n");
    return 1;
  }
  for (int channel = 0; channel < USBDEV_CHANNELS; ++channel) {
    /* The record of a channel without a device is zero. */
    if (rows[channel].usbslot[0] != '\0') printChannel(channel, &rows[channel]);
  }
  return 0;
}
