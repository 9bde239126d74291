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
 *   the comment says what was set. A function that cannot open the file prints "open:[PATH] failed, ret: N" on standard
 *   error; one that cannot store it prints "close:[PATH] failed, ret: N". In both cases the file is as it was before
 *   that step, and nothing of what would have followed is done: no notification, no event, no link.
 * - in, out, in/out: direction of a parameter. Every buffer belongs to the caller; sizes are in bytes and include the
 *   terminating zero. Longer texts are cut. Null is refused with the failure result unless a comment allows it.
 * - Takes the lock: enters the library's one process-wide lock, once or several times in turn, and has left it on
 *   return. The lock does not nest, so host libraries must not call back into the library. Several processes are kept
 *   apart by the host's configuration library, open by open.
 * - Takes no lock: touches no file that the lock guards, and does not wait while another thread holds the lock.
 * - Runs commands: starts host tools and waits for them. The call lasts as long as they do; no lock is held meanwhile
 *   unless the comment says so.
 * - Notifies: ends by sending the 56-byte change notification to the manager, 127.0.0.1 port 10171 (UDP).
 *
 * Threads and processes: any number of them may call the library at once, each on buffers of its own, but for this:
 *
 * - Device events and the synchronisation (mn_set_usbdev_hotplug, vl_set_devpf_list, mn_sync_usbdev_conf, sync_usbdev)
 *   come one at a time over the whole host. Two at once would choose the same free channel, and one device be lost.
 *   The library reads, decides and writes in separate passes and does not prevent it; its callers hold a lock of their
 *   own around these calls.
 * - For the same reason the last of two writers to one channel wins, setting by setting, and two calls of
 *   vl_set_usbchn_profile at once may give one profile to two cameras.
 * - What sends a request shares NVR_CGI: connect_host, nas_auth, nas_logout, nas_sid_auth, vl_auth and vl_sid_auth come
 *   one at a time in a process. http_open and the functions on its sockets share nothing.
 * - AMDmodel_oneChannelLimited, what asks it, and format queries write "/tmp/vl_cpu.info" and read it back. Two such
 *   calls at the same moment may find it empty, which counts as a processor that is not Intel's.
 * - Two format queries of one node at once may end each other's command.
 * - Logins end the process where a connection breaks, see error() in <usbdev/web.h>, which is also the name of a
 *   function of the C library: a program that means the latter ends with status 0.
 * - generate_ssid, and what makes a link or a tag with it, seeds the process's rand(). Numbers in texts follow the
 *   process's LC_NUMERIC.
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
