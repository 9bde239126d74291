/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* Sets the size and the frame rate of a profile's stream: set_stream PROFILE WIDTH HEIGHT FPS */
#include <stdio.h>
#include <stdlib.h>
#include <usbdev/usbdev.h>

static int fail(const char *reason) {
  fprintf(stderr, "set_stream: %s\n", reason);
  return 1;
}

int main(int argc, char **argv) {
  if (argc != 5) return fail("usage: set_stream PROFILE WIDTH HEIGHT FPS");
  const int profile = atoi(argv[1]);
  _streaminfo before = {0};
  if (vl_get_stream_info(profile, &before) != 0) return fail("the profile has no stream");

  _streaminfo wanted = before;
  wanted.width = atoi(argv[2]);
  wanted.height = atoi(argv[3]);
  wanted.framerate = strtof(argv[4], NULL);
  if (!(wanted.framerate > 0)) return fail("the rate is not above 0");
  /* The camera may not have this rate: its closest one is stored. */
  float rate = 0;
  if (findclosedFPS(profile, &wanted, &rate) != 0) return fail("the camera does not offer this size");
  if (vl_set_usbchn_stream(profile, &wanted, &before, 0) != 0) return fail("the settings were not stored");
  printf("profile %d streams %dx%d at %.2f\n", profile, wanted.width, wanted.height, (double)rate);
  return 0;
}
