# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the device manager calls in the library, and what it prints about that."""

from __future__ import annotations

from collections.abc import Mapping, Sequence
from contextlib import suppress

from servicelib.counts import counts
from usbdev import Device, Notification, UsbdevError, core, hotplug, profiles
from usbdev.notification import HEADER_SIZE
from usbdev.records import CHANNELS

from devicelib.decision import Call, Kind

ATTACHED = 1


class Library:
    def synchronise(self) -> None:
        """Updates the channels from what is plugged in, as at a start of the application."""
        with counts.timed("library_calls", "start_up"):
            hotplug.start_up()
        print("synchronised", flush=True)

    def notify_manager(self, profile: int = -1) -> None:
        """Lets the manager look again at the profiles; the library notifies it of no synchronisation, and of a camera that is
        back only if its profile streams MJPEG."""
        nothing_else = Notification(bytes(HEADER_SIZE), profile, video_node=-1, audio_node=-1, flag=0, event=0, target=profile)
        with suppress(UsbdevError):  # a manager that does not run looks when it starts
            core.notify_manager(nothing_else)

    def attached(self) -> Mapping[str, Sequence[str]]:
        """Returns the names of the attached cameras in each port."""
        found: dict[str, list[str]] = {}
        for entry in profiles.channels().values():
            if entry.exists == ATTACHED:
                found.setdefault(entry.usbslot, []).append(entry.devname)
        return found

    def has_free_channel(self) -> bool:
        return len(profiles.channels()) < CHANNELS

    def call(self, call: Call) -> bool:
        """Calls the hotplug handler, and returns whether a channel had to do with it. It is normal that no channel takes a sound
        card, or a camera when all are taken."""
        device = call.device
        counts.add("plug_events", "camera" if call.kind is Kind.CAMERA else "sound_card", "plugged" if call.plugged else "removed")
        what = f"{'plugged' if call.plugged else 'removed'} {call.slot} {call.kind.value} {device.number} {device.name!r}"
        taken, profile = False, None
        try:
            with counts.timed("library_calls", "handle_event"):
                handled = hotplug.handle_event(_device(call))
            taken, profile = True, handled.profile
            outcome = f"channel {handled.channel}"
        except UsbdevError:
            outcome = "no channel"
        except ValueError as problem:
            outcome = str(problem)
        print(f"{what}: {outcome}", flush=True)
        if call.plugged and call.kind is Kind.CAMERA and profile is not None:
            self.notify_manager(profile)
        return taken


def _device(call: Call) -> Device:
    return Device(
        devtype=int(call.kind is Kind.CAMERA),
        node=call.device.number,
        usbslot=call.slot,
        plugged=int(call.plugged),
        devname=call.device.name,
    )
