/*
 * The whole interface of libusbdevlib: device and settings layer of a USB camera application on a storage host.
 *
 * The library has no threads and no state of its own but one lock; everything it remembers is in the host's channel
 * configuration file, "/etc/config/usbdev.conf" (called the file below). USB devices become channels 0 to 9; a channel
 * serves one of the stream profiles 0 to 3, or none (-1).
 *
 * Words used in the comments:
 *
 * - Result: unless a comment says otherwise, 0 is success and -1 failure. A failure leaves the outputs untouched unless
 *   the comment says what was set. Functions that cannot open the file say "open:[PATH] failed, ret: N" on standard
 *   error.
 * - in, out, in/out: direction of a parameter. Every buffer belongs to the caller; sizes are in bytes and include the
 *   terminating zero. Longer texts are cut. Null is refused with the failure result unless a comment allows it.
 * - Takes the lock: enters the library's one process-wide lock, once or several times in turn, and has left it on
 *   return. Any number of threads may call such functions at once. The lock does not nest, so host libraries must not
 *   call back into the library.
 * - Takes no lock: touches no file that the lock guards. Callable from any thread on buffers of its own, and also while
 *   another thread holds the lock.
 * - Runs commands: starts host tools and waits for them. The call lasts as long as they do; no lock is held meanwhile
 *   unless the comment says so.
 * - Notifies: ends by sending the 56-byte change notification to the manager, 127.0.0.1 port 10171 (UDP).
 */
#ifndef USBDEV_USBDEV_H
#define USBDEV_USBDEV_H

#include <usbdev/core.h>
#include <usbdev/devices.h>
#include <usbdev/hostinfo.h>
#include <usbdev/hotplug.h>
#include <usbdev/profiles.h>
#include <usbdev/records.h>
#include <usbdev/web.h>

#endif
