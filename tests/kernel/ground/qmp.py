# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Commands to the emulator: what is plugged in and out while the guest runs."""

from __future__ import annotations

import json
import socket
from collections.abc import Callable
from pathlib import Path

PATIENCE = 120


class Monitor:
    def __init__(self, path: Path) -> None:
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(PATIENCE)
        self._socket.connect(str(path))
        self._lines = self._socket.makefile("rb")
        self._lines.readline()  # the greeting
        self.run("qmp_capabilities")

    def close(self) -> None:
        self._lines.close()
        self._socket.close()

    def run(self, command: str, **arguments: object) -> None:
        """The emulator's own messages between the commands and their answers are passed over, except removals."""
        self._send(command, arguments)
        answer = self._wait(lambda it: "return" in it or "error" in it)
        if "error" in answer:
            raise RuntimeError(f"{command} {arguments}: {answer['error']['desc']}")

    def remove_device(self, name: str) -> None:
        """Returns when the device is gone, so that its name is free; it may have gone with its hub."""
        self._send("device_del", {"id": name})
        waiting = {"the answer", "the removal"}

        def ended(message: dict) -> bool:
            if "error" in message:
                waiting.clear()
            if "return" in message:
                waiting.discard("the answer")
            if message.get("event") == "DEVICE_DELETED" and message["data"].get("device") == name:
                waiting.discard("the removal")
            return not waiting

        self._wait(ended)

    def _send(self, command: str, arguments: dict[str, object]) -> None:
        self._socket.sendall(json.dumps({"execute": command, "arguments": arguments}).encode())

    def _wait(self, wanted: Callable[[dict], bool]) -> dict:
        for line in self._lines:
            message = json.loads(line)
            if wanted(message):
                return message
        raise RuntimeError("the emulator has ended")
