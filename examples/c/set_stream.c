/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* Sets the size and the frame rate of a profile's stream: set_stream PROFILE WIDTH HEIGHT FPS */
#include <stdio.h>
#include <stdlib.h>
#include <usbdev/usbdev.h>

#include "number.h"

static int fail(const char *reason) {
  fprintf(stderr, "set_stream: %s\n", reason);
  return 1;
}

/* Stores the settings, with the closest rate that the camera has. */
static int set(int profile, int width, int height, float framerate) {
  _streaminfo before = {0};
  if (vl_get_stream_info(profile, &before) != 0) return fail("the profile has no stream");

  _streaminfo wanted = before;
  wanted.width = width;
  wanted.height = height;
  wanted.framerate = framerate;
  float rate = 0;
  if (findclosedFPS(profile, &wanted, &rate) != 0) return fail("the camera does not offer this size");
  if (vl_set_usbchn_stream(profile, &wanted, &before, 0) != 0) return fail("the settings were not stored");
  printf("profile %d streams %dx%d at %.2f\n", profile, width, height, (double)rate);
  return 0;
}

int main(int argc, char **argv) {
  int profile = 0;
  int width = 0;
  int height = 0;
  if (argc != 5 || !readNumber(argv[1], &profile) || !readNumber(argv[2], &width) || !readNumber(argv[3], &height)) {
    fprintf(stderr, "usage: set_stream PROFILE WIDTH HEIGHT FPS\n");
    return 2;
  }
  char *end = NULL;
  const float framerate = strtof(argv[4], &end);
  if (*end != '\0' || !(framerate > 0)) return fail("the rate is not a number above 0");
  return set(profile, width, height, framerate);
}
