/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * The whole interface of libusbdevlib: the device and settings layer of a USB camera application on a storage host.
 *
 * The library starts no threads and keeps no state of its own except one lock; it stores everything in the host's
 * channel configuration file, "/etc/config/usbdev.conf", which the comments call the file. USB devices are assigned to
 * channels 0 to 9; a channel serves one of the stream profiles 0 to 3, or none (-1).
 *
 * Terms of the comments:
 *
 * - Result: unless a comment states otherwise, 0 is success and -1 is failure. On failure the outputs are untouched
 *   unless the comment states which are set. A function that cannot open the file prints "open:[PATH] failed, ret: N"
 *   on standard error; one that cannot store it prints "close:[PATH] failed, ret: N". In both cases the file is as it
 *   was before that step, and the function skips everything that would have followed: notification, event, link.
 * - in, out, in/out: direction of a parameter. Every buffer belongs to the caller; sizes are in bytes and include the
 *   terminating zero. Longer texts are cut. Null is refused with the failure result unless a comment allows it.
 * - Takes the lock: takes the library's one process-wide lock, once or several times one after the other, and has
 *   released it on return. Threads get it in the order in which they ask for it. The lock does not nest, so host
 *   libraries must not call this library. Between processes the host's configuration library provides the locking, for
 *   each open of the file.
 * - Takes no lock: uses no file that the lock protects, and does not wait while another thread holds the lock.
 * - Runs commands: starts host tools and waits for them, so the call takes at least as long as they do; it holds no
 *   lock meanwhile unless the comment states that it does.
 * - Notifies: sends, at its end, the 56-byte change notification to the manager, the host's service that runs the
 *   streams: 127.0.0.1, UDP port 10171.
 * - Port, slot: a USB port, by the kernel's name for it, such as "3-1.2", of at most 127 characters. Parameters and
 *   fields are called slot or usbslot.
 * - Waits for: of two cameras that cannot stream at the same time, one streams and the other waits for it.
 * - Conflict mark: a channel's conflictch: -1 = it may stream, 0 to 9 = it waits for that channel, 999 = its device is
 *   unsupported.
 * - Live link, share link: a symbolic link to the files of a profile's stream, for the application's own pages; and one
 *   for viewers without an account, who also need the link's share id (ssid) and token.
 *
 * Threads and processes: any number of them may call the library at the same time, each with its own buffers, with
 * these exceptions:
 *
 * - Device events and the synchronisation (mn_set_usbdev_hotplug, vl_set_devpf_list, mn_sync_usbdev_conf, sync_usbdev)
 *   may run only one at a time on a host. Two at the same time would choose the same free channel, and one device would
 *   be lost. The library reads, decides and writes in separate passes and does not prevent this; its callers have to
 *   hold a lock of their own around these calls.
 * - For the same reason the last of two writers to one channel wins, setting by setting, and two calls of
 *   vl_set_usbchn_profile at the same time may assign one profile to two cameras.
 * - The functions that send a request share NVR_CGI: of connect_host, nas_auth, nas_logout, nas_sid_auth, vl_auth and
 *   vl_sid_auth only one may run at a time in a process. http_open and the functions on its sockets share nothing.
 * - AMDmodel_oneChannelLimited, the functions that call it, and format queries write "/tmp/vl_cpu.info" and read it
 *   back. Two such calls at the same moment may read it empty, which is taken as a processor that is not Intel's.
 * - Two format queries of one node at the same time may end each other's command.
 * - A login ends the process when its connection breaks, see error() in <usbdev/web.h>. That is also the name of a
 *   function of the C library: a program that means to call that one ends with status 0.
 * - generate_ssid, and every function that makes a share link or a stream tag with it, seeds the process's rand().
 *   Numbers in texts follow the process's LC_NUMERIC.
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
