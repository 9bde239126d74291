# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The manager passes the library's notifications on to everybody who connects to its socket file."""

from __future__ import annotations

from conftest import RunOnHost
from managerlib.hub import FILE, MOST_READERS

MANAGER = r"""$(ss -lnup | sed -n "s/.*manager-service.,pid=\([0-9]*\).*/\1/p")"""
READER = f"""/usr/bin/python3 -c '
import select, socket
def connected():
    reader = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
    reader.connect("{FILE}")
    reader.settimeout(20)
    return reader
def change():
    notification = b"ORDA_VLM2_CFCG_N" + bytes(40)
    socket.socket(socket.AF_INET, socket.SOCK_DGRAM).sendto(notification, ("127.0.0.1", 10171))
"""


def test_every_reader_gets_every_notification_whole(with_manager: RunOnHost) -> None:
    script = "readers = [connected() for _ in range(3)]\nchange(); change()\nprint([len(it.recv(99)) for it in 2 * readers])'"
    assert with_manager(READER + script).stdout == f"{6 * [56]}\n"


def test_one_that_does_not_read_is_dropped_and_the_others_go_on(with_manager: RunOnHost) -> None:
    script = """
lazy, eager = connected(), connected()
dropped = select.poll()
dropped.register(lazy, select.POLLHUP)
sent = 0
while not dropped.poll(0):
    change()
    sent += 1
    assert len(eager.recv(99)) == 56
count = 0
while lazy.recv(99):
    count += 1
change()
print(0 < count < sent, len(eager.recv(99)))'"""
    done = with_manager(READER + script)
    assert done.stdout == "True 56\n", done.stderr


def test_there_is_a_largest_number_of_readers(with_manager: RunOnHost) -> None:
    script = f"""
readers = [connected() for _ in range({MOST_READERS})]
late = connected()
print(late.recv(99))
change()
print(sum(len(it.recv(99)) == 56 for it in readers))
readers.pop().close()
while True:
    late = connected()
    change()
    if received := late.recv(99):
        break
print(len(received))'"""
    assert with_manager(READER + script).stdout == f"b''\n{MOST_READERS}\n56\n"


def test_the_file_is_for_owner_and_group_and_is_replaced_after_a_manager_was_killed(with_manager: RunOnHost) -> None:
    script = f"""stat -c %A {FILE}
kill -9 {MANAGER}
manager-service >/tmp/out 2>/tmp/log & until grep -q listening /tmp/log; do sleep 0.05; done
{READER}reader = connected(); change(); print(len(reader.recv(99)))'
kill $!; wait; test ! -e {FILE} && echo gone"""
    assert with_manager(script).stdout == "srw-rw----\n56\ngone\n"


def test_a_manager_that_cannot_make_the_file_still_runs_streams(on_host: RunOnHost) -> None:
    script = f"mkdir -p {FILE}/folder; manager-service 2>/tmp/log & until grep -q listening /tmp/log; do sleep 0.05; done; kill $!; wait $!; echo $?; cat /tmp/log"
    assert on_host(script).stdout == (
        "0\nmanager-service: notifications are not passed on: Is a directory\n"
        "manager-service: listening on 127.0.0.1:10171\n"
    )


def test_watch_listens_to_the_manager_until_that_ends(with_manager: RunOnHost) -> None:
    script = f"""usbdevctl watch >/tmp/out 2>/tmp/err & watch=$!
until_true 'grep -q "listening to the manager" /tmp/err'
sim plug usb2-camera 3-1 >/dev/null; usbdevctl assign 3-1 0 >/dev/null; usbdevctl slot off 3-1 >/dev/null
until_true 'grep -q "event 7" /tmp/out'
kill {MANAGER}
wait $watch; echo $?; tail -n 1 /tmp/err"""
    assert with_manager(script).stdout == "1\nusbdevctl: the manager has ended\n"
