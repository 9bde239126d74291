"""The command "manager-service"."""

from __future__ import annotations

import argparse
import asyncio

from servicelib import lifecycle

from managerlib import notification

ADDRESS = ("127.0.0.1", 10171)


class Receiver(asyncio.DatagramProtocol):
    """Prints each notification."""

    def datagram_received(self, data: bytes, addr: tuple[str, int]) -> None:
        try:
            print(notification.decode(data), flush=True)
        except ValueError as problem:
            lifecycle.say(f"refused a datagram: {problem}")


async def serve() -> None:
    transport, _ = await asyncio.get_running_loop().create_datagram_endpoint(Receiver, local_addr=ADDRESS)
    await lifecycle.until_stopped("{}:{}".format(*ADDRESS))
    transport.close()


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="manager-service", description="Receives the library's change notifications.")
    parser.parse_args(arguments)
    return lifecycle.run(serve())
