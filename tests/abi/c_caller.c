/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* A caller written in C: links the library and uses what needs no host. */
#include <stdio.h>
#include <string.h>
#include <usbdev/core.h>

static int failures;

static void expect(int holds, const char *what) {
  if (holds) return;
  fprintf(stderr, "failed: %s\n", what);
  failures++;
}

int main(void) {
  char text[] = "  \"abc\" \r\n";
  expect(strcmp(trim(text), "abc") == 0, "trim");

  char line[] = "Model = K41";
  char left[16];
  char right[16];
  expect(get_two_params(line, "=", left, right) == 1, "get_two_params");
  expect(strcmp(left, "Model") == 0 && strcmp(right, "K41") == 0, "both parts");

  int channel = -7;
  expect(trsProfiletoPlugCh(USBDEV_PROFILES, &channel) == -1 && channel == -7, "a profile out of range");
  expect(vl_settingNotify(NULL) == -1, "no datagram");
  return failures;
}
