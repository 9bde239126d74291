/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* Arguments that are whole numbers. */
#pragma once

#include <errno.h>
#include <limits.h>
#include <stdlib.h>

/* Reads a whole number from 0 on; returns 0 if the text is something else. */
static inline int readNumber(const char *text, int *number) {
  char *end = NULL;
  errno = 0;
  const long value = strtol(text, &end, 10);
  if (end == text || *end != '\0' || errno != 0 || value < 0 || value > INT_MAX) return 0;
  *number = (int)value;
  return 1;
}
