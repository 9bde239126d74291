#!/bin/sh
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# usbdevctl as users call it. The libraries and tools of the host are everywhere on a storage host; on a Debian machine
# with the state of usbdev-host they are in the view that this enters.
prefix=$(dirname "$(dirname "$(readlink -f "$0")")")
program=$prefix/libexec/usbdevctl
enter=$prefix/share/usbdev-host/view/enter
if [ -d /var/lib/usbdev ] && [ -x "$enter" ]; then exec "$enter" "$program" "$@"; fi
exec "$program" "$@"
