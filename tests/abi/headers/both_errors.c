/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/* <error.h> and the library's interface declare a function of one name; both may be included, in either order. */
#if defined(ERROR_H_FIRST)
#include <error.h>
#include <usbdev/usbdev.h>
#else
#include <usbdev/usbdev.h>
/* in this order */
#include <error.h>
#endif

void use_both(void);

void use_both(void) {
#if defined(ERROR_H_FIRST)
  error(1, 0, "%s", "the C library's");
#endif
#if defined(__cplusplus) || !defined(ERROR_H_FIRST)
  error("the library's");
#endif
  error_at_line(1, 0, "file", 1, "%s", "the C library's");
}
